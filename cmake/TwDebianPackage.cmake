# `cpack -G DEB` in a Linux build tree makes the Debian package: the static
# libraries, headers, CMake and pkg-config files, the tools and the add-in
# module, under /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME twveerbackglf)
set(CPACK_PACKAGE_VENDOR "twveerbackglf")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "The Veerback add-in, its viewer-side tools and the C++ foundation beneath it")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "twveerbackglf developers <dev@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
# The tools and the module need the runtime libraries; a program built on
# the static libraries needs their development packages.
set(CPACK_DEBIAN_PACKAGE_DEPENDS
    "libc6, libstdc++6, libsqlite3-0, libpugixml1v5, libssl3, libcurl4, libsqlite3-dev, libpugixml-dev, libssl-dev, libcurl4-openssl-dev")
include(CPack)
