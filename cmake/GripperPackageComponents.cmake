# Read by cpack once per generator: which install components each package holds.
if(CPACK_GENERATOR STREQUAL "TGZ")
    set(CPACK_COMPONENTS_ALL pendant)
    set(CPACK_PACKAGE_FILE_NAME ${CPACK_GRIPPER_PENDANT_ARCHIVE_NAME})
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
else()
    set(CPACK_COMPONENTS_ALL tools plugin debian)
endif()
