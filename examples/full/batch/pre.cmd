@echo off
echo pre: %InstallDir%>>"%BootDrive%\atlas-batches.txt"
