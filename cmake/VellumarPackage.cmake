# The Debian package, made by CPack from the install rules: `make package` (or
# `cpack --config build/CPackConfig.cmake -G DEB`) gives vellumar_<version>_<arch>.deb, which
# installs under /usr with `apt install ./vellumar_*.deb`.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vellumar)
set(CPACK_PACKAGE_VENDOR "Vellumar")
set(CPACK_PACKAGE_CONTACT "Vellumar developers <vellumar@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Amateur radio log for the DXCC award chaser")
set(CPACK_PACKAGE_DESCRIPTION
    "Keeps the log of a radio amateur's QSOs and tells, for every DXCC entity, band and mode,
what is worked, confirmed and verified; ADIF import and export; a command-line tool.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_STRIP_FILES ON)
# The shared libraries the executables link (Qt 6, SQLite, the C++ runtime...) become the
# package's dependencies through dpkg-shlibdeps; xdg-open opens the help pages and reports.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "xdg-utils")
include(CPack)
