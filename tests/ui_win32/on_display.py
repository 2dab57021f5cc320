"""Runs a program for Windows on a display in memory: on_display.py WINE PROGRAM [WORD...]"""
import os
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "screen"))
import screen

display = screen.Display(int(os.environ["ORV2_DPI"]))
try:
    sys.exit(subprocess.run(sys.argv[1:], env=display.environment, check=False).returncode)
finally:
    display.close()
    subprocess.run(["wineserver", "--kill"], check=False)
