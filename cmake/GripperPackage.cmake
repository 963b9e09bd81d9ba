# Packages, made by `make package` (cpack) in build/packages:
#   DEB: gripper-tools for a commissioning laptop: the tools, and the plug-in for the emulator;
#        its dependencies come from the binaries (dpkg-shlibdeps).
#   TGZ: the pendant's archive: the folder "plugins" with the plug-in, and WHERE-IT-GOES.txt.
# The plug-in-only build makes the TGZ alone.
set(CPACK_PACKAGE_NAME ${GRIPPER_PACKAGE_NAME})
set(CPACK_PACKAGE_VENDOR "Gripper plug-in developers")
set(CPACK_PACKAGE_CONTACT "Gripper plug-in developers <developers@gripper-plugin.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "commissioning tools and pendant emulator for the two-finger gripper plug-in")
set(CPACK_PACKAGE_DESCRIPTION
    "gripper-doctor finds grippers on serial ports and TCP and says in plain words
what is wrong with the link to them. gripper-sim simulates grippers on
pseudo-terminals and loopback TCP. pendant-emulator runs the teach pendant's
gripper plug-in (Zanther2F, included) outside a pendant, against simulated or
real grippers.")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})

if(GRIPPER_WITH_QT)
    find_package(Qt5 5.5 REQUIRED COMPONENTS Core)
endif()
# The pendant's archive: one folder named after the plug-in, its version and the Qt it was built
# with, so that a build for the emulator is not mistaken for one made with the pendant's kit.
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_GRIPPER_PENDANT_ARCHIVE_NAME
    "Zanther2F-${PROJECT_VERSION}-qt${Qt5Core_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")

set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/GripperPackageComponents.cmake)
if(GRIPPER_PLUGIN_ONLY)
    set(CPACK_GENERATOR TGZ)
    include(CPack)
    return()
endif()

set(CPACK_GENERATOR DEB TGZ)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The platform library is the package's own.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS usr/${GRIPPER_INSTALL_PLATFORMDIR})
# The emulator's pages draw their texts in these (Chinese catalogues included).
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, fonts-wqy-microhei")

configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/postrm ${CMAKE_BINARY_DIR}/debian/postrm @ONLY)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/debian/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Debian's copyright file and changelog, in the .deb only.
set(changelog ${CMAKE_BINARY_DIR}/debian/changelog.Debian)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${changelog} @ONLY)
add_custom_command(OUTPUT ${changelog}.gz
    COMMAND gzip -9nkf ${changelog}
    DEPENDS ${changelog}
    VERBATIM)
add_custom_target(gripper_debian_changelog ALL DEPENDS ${changelog}.gz)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/copyright ${changelog}.gz
        DESTINATION ${GRIPPER_INSTALL_DOCDIR} COMPONENT debian EXCLUDE_FROM_ALL)
include(CPack)
