# find_package(Korb) lets a project include(KorbCPack).
list(APPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}")
