# In skipped code only the whole words if, else and endif count; elsewhere an abbreviation is as good.
if 0
    els
    echo skipped
    endi
else
    echo right         # expect: right
endi
echo outside           # expect: outside
