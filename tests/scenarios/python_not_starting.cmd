# A Python that does not start tells why at each use, and the script goes on.
# options: -P lamp
# env: PYTHONHASHSEED=bad
python -c 'print(1)'
# expect err: %s (4): Python is not available: PYTHONHASHSEED must be "random" or an integer in range [0; 4294967295]
# expect err: Python is not available: PYTHONHASHSEED must be "random" or an integer in range [0; 4294967295]
# expect err: 
echo -n "`pythonexprs('1')`"
# expect: Python is not available: PYTHONHASHSEED must be "random" or an integer in range [0; 4294967295]
lamp
# expect err: %s (10): Python is not available: PYTHONHASHSEED must be "random" or an integer in range [0; 4294967295]
# expect err: Python is not available: PYTHONHASHSEED must be "random" or an integer in range [0; 4294967295]
echo on $status   # expect: on 0
