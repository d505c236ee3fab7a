#!/usr/bin/env python3
"""The array of the worked example holds the lengths of the beams: check_array.py PROGRAM DECK"""
import re
import subprocess
import sys

program, deck = sys.argv[1:]
text = subprocess.run([program, deck, "--encoding", "ascii", "--vtu", "-"], check=True,
                      capture_output=True, text=True).stdout
array = re.search(r'<DataArray[^>]*Name="length \[m\]"[^>]*>([^<]*)<', text)
if array is None:
    sys.exit("the file has no such array")
lengths = [float(word) for word in array[1].split()]
if lengths != [4, 6, 4]:
    sys.exit(f"lengths are {lengths}")
