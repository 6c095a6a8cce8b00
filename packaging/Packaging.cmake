# SPDX-License-Identifier: GPL-3.0-or-later

# Installation and Debian packages. Two packages:
#   remote-setup-cli: remote-setup-cli, recorder-sim, make-krp-package, the
#                     data files, manual pages, shell completion, the user
#                     guide with the documents it links; QtCore and
#                     QtNetwork only
#   remote-setup:     the desktop client with its desktop entry, icons and
#                     metainfo; depends on the first for the data files.
# `cpack` in a build tree writes both .deb files.

set(RS_PACKAGING_DIR ${CMAKE_CURRENT_LIST_DIR})
set(RS_GENERATED_DIR ${CMAKE_BINARY_DIR}/packaging)
find_program(HELP2MAN help2man REQUIRED)
find_program(GZIP gzip REQUIRED)

# The field names the command line's completion offers.
add_executable(list-field-names ${RS_PACKAGING_DIR}/ListFieldNames.cpp)
target_link_libraries(list-field-names PRIVATE rs_setup)
set_target_properties(list-field-names PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${RS_GENERATED_DIR})

add_executable(render-icon ${RS_PACKAGING_DIR}/RenderIcon.cpp)
target_link_libraries(render-icon PRIVATE rs_app)
set_target_properties(render-icon PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${RS_GENERATED_DIR})

# Manual pages: help2man renders each program's --help and --version, with
# the sections of packaging/man/PROGRAM.h2m added, so a page lists exactly
# the options the program accepts.
set(RS_MAN_PAGES)
foreach(program remote-setup-cli recorder-sim make-krp-package remote-setup)
    set(page ${RS_GENERATED_DIR}/man/${program}.1)
    set(include ${RS_PACKAGING_DIR}/man/${program}.h2m)
    add_custom_command(OUTPUT ${page}.gz
        COMMAND ${CMAKE_COMMAND} -E make_directory ${RS_GENERATED_DIR}/man
        COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 QT_QPA_PLATFORM=offscreen
                ${RS_PACKAGING_DIR}/make-man-page.sh ${HELP2MAN} ${include} ${page}
                $<TARGET_FILE:${program}>
        COMMAND ${GZIP} -9nf ${page}
        DEPENDS ${program} ${include} ${RS_PACKAGING_DIR}/make-man-page.sh
        COMMENT "Writing the manual page of ${program}"
        VERBATIM)
    list(APPEND RS_MAN_PAGES ${page}.gz)
endforeach()

set(RS_COMPLETION ${RS_GENERATED_DIR}/completion/remote-setup-cli)
add_custom_command(OUTPUT ${RS_COMPLETION}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${RS_GENERATED_DIR}/completion
    COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0
            ${RS_PACKAGING_DIR}/make-completion.sh ${RS_COMPLETION}
            $<TARGET_FILE:remote-setup-cli> $<TARGET_FILE:recorder-sim>
            $<TARGET_FILE:list-field-names>
    DEPENDS remote-setup-cli recorder-sim list-field-names ${RS_PACKAGING_DIR}/make-completion.sh
    COMMENT "Writing the bash completion"
    VERBATIM)

# Debian wants the changelog of a package compressed, as changelog.gz.
set(RS_CHANGELOG ${RS_GENERATED_DIR}/changelog.gz)
add_custom_command(OUTPUT ${RS_CHANGELOG}
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/debian/changelog ${RS_GENERATED_DIR}
    COMMAND ${GZIP} -9nf ${RS_GENERATED_DIR}/changelog
    DEPENDS ${CMAKE_SOURCE_DIR}/debian/changelog
    COMMENT "Compressing the changelog"
    VERBATIM)

set(RS_ICON_SIZES 16 24 32 48 64 128 256)
set(RS_ICON_STAMP ${RS_GENERATED_DIR}/icons/stamp)
add_custom_command(OUTPUT ${RS_ICON_STAMP}
    COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0
            $<TARGET_FILE:render-icon> ${RS_GENERATED_DIR}/icons ${RS_APP_ID} ${RS_ICON_SIZES}
    COMMAND ${CMAKE_COMMAND} -E touch ${RS_ICON_STAMP}
    DEPENDS render-icon
    COMMENT "Drawing the icon sizes"
    VERBATIM)

configure_file(${RS_PACKAGING_DIR}/remote-setup.desktop.in
               ${RS_GENERATED_DIR}/${RS_APP_ID}.desktop @ONLY)
configure_file(${RS_PACKAGING_DIR}/remote-setup.metainfo.xml.in
               ${RS_GENERATED_DIR}/${RS_APP_ID}.metainfo.xml @ONLY)

add_custom_target(packaging_files ALL
    DEPENDS ${RS_MAN_PAGES} ${RS_COMPLETION} ${RS_ICON_STAMP} ${RS_CHANGELOG})

# The command line, the simulator and what they share with the client.
install(TARGETS remote-setup-cli recorder-sim make-krp-package
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT cli)
install(FILES ${RS_DATA_DIR}/language.config ${RS_DATA_DIR}/DEFDVRSETUP.DAT
        DESTINATION ${RS_INSTALL_DATADIR} COMPONENT cli)
install(FILES ${RS_GENERATED_DIR}/man/remote-setup-cli.1.gz
              ${RS_GENERATED_DIR}/man/recorder-sim.1.gz
              ${RS_GENERATED_DIR}/man/make-krp-package.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT cli)
# bash-completion loads a file named after the command it is asked about.
install(FILES ${RS_COMPLETION}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT cli)
install(FILES ${RS_COMPLETION} RENAME recorder-sim
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT cli)
# The user guide and what it links to, so that its links work where it is
# installed (tests/packaging/debs-test.sh follows them).
set(docs ${CMAKE_SOURCE_DIR}/docs)
install(FILES ${docs}/user-guide.md ${docs}/record-layout.md ${docs}/firmware-packages.md
              ${docs}/wire-protocol.md ${docs}/ansible.md
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/remote-setup-cli COMPONENT cli)
install(DIRECTORY ${docs}/screenshots
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/remote-setup-cli COMPONENT cli)
# The Ansible collection remote_setup.recorder, where Debian's ansible-core looks.
install(DIRECTORY ${CMAKE_SOURCE_DIR}/ansible/ansible_collections/remote_setup/recorder
        DESTINATION ${CMAKE_INSTALL_DATADIR}/ansible/collections/ansible_collections/remote_setup
        COMPONENT cli PATTERN __pycache__ EXCLUDE)
# Each package carries the licence and the changelog in its own doc folder.
install(FILES ${CMAKE_SOURCE_DIR}/debian/copyright ${RS_CHANGELOG}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/remote-setup-cli COMPONENT cli)

# The desktop client.
install(TARGETS remote-setup RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT client)
install(FILES ${CMAKE_SOURCE_DIR}/debian/copyright ${RS_CHANGELOG}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/remote-setup COMPONENT client)
install(FILES ${RS_GENERATED_DIR}/man/remote-setup.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT client)
install(FILES ${RS_GENERATED_DIR}/${RS_APP_ID}.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT client)
install(FILES ${RS_GENERATED_DIR}/${RS_APP_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT client)
install(FILES ${RS_PACKAGING_DIR}/remote-setup.svg RENAME ${RS_APP_ID}.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT client)
foreach(size ${RS_ICON_SIZES})
    install(FILES ${RS_GENERATED_DIR}/icons/${size}x${size}/apps/${RS_APP_ID}.png
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
            COMPONENT client)
endforeach()

set(CPACK_PACKAGE_NAME remote-setup)
set(CPACK_PACKAGE_VENDOR "Remote Setup developers")
set(CPACK_PACKAGE_CONTACT "${RS_MAINTAINER}")
set(CPACK_PACKAGE_HOMEPAGE_URL "${RS_HOMEPAGE}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL cli client)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${RS_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION net)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_CLI_PACKAGE_NAME remote-setup-cli)
set(CPACK_DEBIAN_CLIENT_PACKAGE_NAME remote-setup)
set(CPACK_COMPONENT_CLIENT_DEPENDS cli)
# The completion needs bash-completion to be loaded; the rest works without.
set(CPACK_DEBIAN_CLI_PACKAGE_RECOMMENDS bash-completion)
# The first line of each is the package's synopsis. CPackDeb puts the
# project-wide summary before a component's description unless the summary
# is CPack's own default, hence that value.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${CMAKE_PROJECT_NAME} built using CMake")
set(CPACK_DEBIAN_CLI_DESCRIPTION "Remote Setup command line and recorder simulator
remote-setup-cli configures digital video recorders from scripts and for
fleets: information, export, import, factory defaults, clock and firmware
updates. recorder-sim is a recorder for trials and tests; make-krp-package
builds firmware packages for it. Also holds the translations and the
factory-default setup that the desktop client uses.")
set(CPACK_DEBIAN_CLIENT_DESCRIPTION "Remote Setup desktop client for digital video recorders
Connects to a digital video recorder over the network and edits its
settings page by page: cameras, recording, display, devices, network and
the system itself, with export, import, factory defaults and firmware
updates.")
include(CPack)
