# Where an install puts things, relative to its prefix.
#   plugin:  lib/gripper/plugins/libZanther2F.so                      (what a pendant loads)
#   tools:   bin/{gripper-doctor,gripper-sim,pendant-emulator}, lib/gripper/platform (the pendant's
#            platform library ExtensionSystem for the emulator), share/man/man1,
#            share/doc/gripper-tools
#   pendant: plugins/libZanther2F.so and WHERE-IT-GOES.txt            (the pendant's .tar.gz only)
set(GRIPPER_PACKAGE_NAME gripper-tools)
set(GRIPPER_INSTALL_BINDIR bin)
set(GRIPPER_INSTALL_LIBDIR lib/gripper)
set(GRIPPER_INSTALL_PLUGINDIR ${GRIPPER_INSTALL_LIBDIR}/plugins)
set(GRIPPER_INSTALL_PLATFORMDIR ${GRIPPER_INSTALL_LIBDIR}/platform)
set(GRIPPER_INSTALL_MANDIR share/man/man1)
set(GRIPPER_INSTALL_DOCDIR share/doc/${GRIPPER_PACKAGE_NAME})
# Folders made by an install are rwxr-xr-x whatever the umask, as a package needs them.
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
