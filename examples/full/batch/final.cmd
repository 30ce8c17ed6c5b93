@echo off
echo final: %InstallDir%>>"%BootDrive%\atlas-batches.txt"
