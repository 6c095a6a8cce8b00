# SPDX-License-Identifier: GPL-3.0-or-later

# Where an installation puts things, and the build facts the programs print.
# Included before the program folders: they compile against BuildInfo.h.
include(GNUInstallDirs)

set(RS_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/remote-setup)
# The programs find their data relative to themselves, so a relocated or
# unpacked installation works as well as one in CMAKE_INSTALL_PREFIX.
file(RELATIVE_PATH RS_DATA_SUBDIR /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${RS_INSTALL_DATADIR})

# The application id names the desktop entry, the icon and the metainfo.
set(RS_APP_ID org.remotesetup.RemoteSetup)
# The metainfo takes its screenshot addresses from the homepage.
set(RS_HOMEPAGE https://remotesetup.org)
set(RS_MAINTAINER "Remote Setup developers <maintainers@remotesetup.org>")
# The date of the release that project() names, for the metainfo.
set(RS_RELEASE_DATE 2026-11-23)

configure_file(${CMAKE_CURRENT_LIST_DIR}/BuildInfo.h.in ${CMAKE_BINARY_DIR}/generated/BuildInfo.h
               @ONLY)
include_directories(${CMAKE_BINARY_DIR}/generated)
