# The words of perfmon and undoctrl set what their reports say; others are passed over.
undoctrl                   # expect: Undo state is currently enabled
undoctrl off; undoctrl off; undoctrl
# expect: Undo state is currently disabled
undoctrl on off            # expect: Undo state is currently disabled
undoctrl -s on; undoctrl
# expect: Undo usage is currently 0 out of 67108864 bytes
# expect: Undo state is currently disabled
undoctrl -c on; undoctrl -s
# expect: Undo usage is currently 0 out of 67108864 bytes
undoctrl maybe; undoctrl ON; undoctrl
# expect: Undo state is currently disabled
undoctrl on; undoctrl      # expect: Undo state is currently enabled

perfmon
perfmon -t ms -s           # expect: perfmon -o off -t ms
perfmon -o nonsense -t nonsense; echo
# expect: nonsense
perfmon -s ignored         # expect: perfmon -o off -t ms
perfmon -s -t sec          # expect: perfmon -o off -t sec
perfmon -o window -s       # expect: windowperfmon -o window -t sec
perfmon -o stdout -s       # expect: stdoutperfmon -o stdout -t sec
perfmon -s -o off; echo "<`execute('perfmon -s')`>"
# expect: offperfmon -o off -t sec
# expect: <perfmon -o off -t sec>

memory ignored > usage
unix grep -c resident usage
# expect: 1
coredump; coredump -m; echo status $status
# expect: status 0
coredump -f -m; echo never
# status: 134
