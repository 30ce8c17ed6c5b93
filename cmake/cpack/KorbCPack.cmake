# KORB installers from CPack: include this before CPack, and `cpack` makes one `.exe` of the project's install rules.
#
#   include(KorbCPack)
#   include(CPack)
#
# What CPack knows is used: CPACK_PACKAGE_NAME, _VERSION, _VENDOR, _INSTALL_DIRECTORY, _HOMEPAGE_URL, _CONTACT, _FILE_NAME;
# CPACK_RESOURCE_FILE_LICENSE and _README become pages; each program of CPACK_PACKAGE_EXECUTABLES gets a shortcut in the
# start menu, and those of CPACK_CREATE_DESKTOP_LINKS one on the desktop; CPACK_COMPONENTS_ALL chooses what is installed;
# CPACK_PACKAGE_ICON is the installer's icon if it is an .ico.
# What only KORB knows:
#
#   CPACK_KORB_MANIFEST    a manifest with further tables ([options], [[association]], ...); what it says wins over what
#                          CPack knows. All CPACK_ variables are variables there: ${CPACK_PACKAGE_VERSION}, or
#                          ${CPACK_KORB_FILES}, the folder of the files that are packed
#   CPACK_KORB_ICON        the installer's icon, an .ico, in place of CPACK_PACKAGE_ICON
#   CPACK_KORB_UPGRADE_FROM
#                          installers of earlier releases, a list: files, with * and ? in their names. An upgrade takes
#                          away what they installed and this one doesn't
#   CPACK_KORB_ARGUMENTS   further arguments of `korbpack build`, as in "--strict"
#   KORBPACK_EXECUTABLE    korbpack, by default the one beside this file or in the search path
#   KORB_STUB              korb.exe, by default the one beside korbpack
set(CPACK_GENERATOR External)
set(CPACK_EXTERNAL_ENABLE_STAGING ON)
set(CPACK_EXTERNAL_PACKAGE_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/KorbPackage.cmake")

find_program(KORBPACK_EXECUTABLE korbpack HINTS "${CMAKE_CURRENT_LIST_DIR}/../../../bin" "${CMAKE_CURRENT_LIST_DIR}/..")
if(NOT KORBPACK_EXECUTABLE)
  message(FATAL_ERROR "KorbCPack: there is no korbpack: set KORBPACK_EXECUTABLE to it")
endif()
set(CPACK_KORB_PACK "${KORBPACK_EXECUTABLE}")
set(CPACK_KORB_STUB "${KORB_STUB}")
# A program that is built for Windows is what the shortcuts start.
set(CPACK_KORB_SUFFIX "${CMAKE_EXECUTABLE_SUFFIX}")
