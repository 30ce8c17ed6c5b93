@echo off
echo post: %InstallDir%>>"%BootDrive%\atlas-batches.txt"
