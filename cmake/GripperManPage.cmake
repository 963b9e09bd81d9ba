# gripper_add_man_page(TARGET SUMMARY): the program's manual page, made at build time from its
# own --help text by help2man (when Debian's help2man is there; never in a sanitizer build),
# compressed and installed with the tools.
find_program(HELP2MAN_PROGRAM help2man)
if(HELP2MAN_PROGRAM AND NOT GRIPPER_SANITIZE)
    set(GRIPPER_MAN_PAGES ON)
else()
    set(GRIPPER_MAN_PAGES OFF)
    message(STATUS "No manual pages (help2man not found, or a sanitizer build)")
endif()

function(gripper_add_man_page target summary)
    if(NOT GRIPPER_MAN_PAGES)
        return()
    endif()
    set(page ${CMAKE_CURRENT_BINARY_DIR}/${target}.1)
    # Run through PATH, so that the usage lines name the program and not its build folder.
    add_custom_command(OUTPUT ${page}.gz
        COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
                "PATH=$<TARGET_FILE_DIR:${target}>:$ENV{PATH}"
                ${HELP2MAN_PROGRAM} --no-info --version-string=${PROJECT_VERSION}
                --name=${summary} --output=${page} ${target}
        COMMAND gzip -9nf ${page}
        DEPENDS ${target}
        COMMENT "Manual page of ${target}"
        VERBATIM)
    add_custom_target(${target}_man_page ALL DEPENDS ${page}.gz)
    install(FILES ${page}.gz DESTINATION ${GRIPPER_INSTALL_MANDIR} COMPONENT tools)
endfunction()
