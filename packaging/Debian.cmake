# cpack -G DEB

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tallyvox)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Tallyvox developers <tallyvox@orbelknoll.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "every channel of an audio output speaks its own number")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tallyvox finds out which channel of a multichannel audio interface ends up
where: channel 1 says one, channel 2 says two, up to channel 128, all together
or one after another. It plays to PipeWire, JACK and ALSA, each number on
exactly its channel, never remixed or resampled.

The package holds the window (tallyvox), a companion for terminals
(tallyvoxctl) and the recordings.")
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# QML modules are loaded by name, so the linker knows nothing of them.
set(qml_modules
    qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qtquick
    qml6-module-qtquick-window qml6-module-qtquick-templates qml6-module-qtquick-layouts)
list(JOIN qml_modules ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "pipewire | jackd2, qt6-wayland")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
