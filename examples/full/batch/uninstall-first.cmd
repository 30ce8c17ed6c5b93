@echo off
echo uninstall-first: %InstallDir%>>"%BootDrive%\atlas-batches.txt"
