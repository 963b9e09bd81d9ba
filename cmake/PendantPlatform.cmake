# The pendant's platform library ExtensionSystem for the plug-in-only build: the pendant kit's own
# when GRIPPER_EXTENSION_SYSTEM_LIBRARY names it (its headers iplugin.h, pluginmanager.h,
# abscondinfo.h and dropdownlist.h in GRIPPER_EXTENSION_SYSTEM_INCLUDE_DIR), else the stand-in
# under platform/.
set(GRIPPER_EXTENSION_SYSTEM_LIBRARY "" CACHE FILEPATH "The pendant kit's ExtensionSystem library")
set(GRIPPER_EXTENSION_SYSTEM_INCLUDE_DIR "" CACHE PATH "Folder of the pendant kit's ExtensionSystem headers")

if(NOT GRIPPER_EXTENSION_SYSTEM_LIBRARY)
    add_subdirectory(platform)
    return()
endif()

find_package(Qt5 5.5 REQUIRED COMPONENTS Core Widgets)
# The sources include "platform/iplugin.h": the kit's headers are copied under that name into a
# folder that every target searches before the source tree.
set(kit_headers ${CMAKE_BINARY_DIR}/pendant_kit)
foreach(header iplugin.h pluginmanager.h abscondinfo.h dropdownlist.h)
    configure_file(${GRIPPER_EXTENSION_SYSTEM_INCLUDE_DIR}/${header}
                   ${kit_headers}/platform/${header} COPYONLY)
endforeach()
include_directories(BEFORE ${kit_headers})

add_library(ExtensionSystem SHARED IMPORTED)
set_target_properties(ExtensionSystem PROPERTIES
    IMPORTED_LOCATION ${GRIPPER_EXTENSION_SYSTEM_LIBRARY}
    INTERFACE_LINK_LIBRARIES "Qt5::Core;Qt5::Widgets")
