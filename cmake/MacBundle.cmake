# tallyvox_bundle(TARGET) makes the program an application bundle: Tallyvox.app with its
# Info.plist, its icon and the recordings in Contents/Resources/Voices.

get_filename_component(tallyvox_root "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)

function(tallyvox_bundle target)
    set(icon "${tallyvox_root}/platform/macos/Tallyvox.icns")
    file(GLOB voices CONFIGURE_DEPENDS "${tallyvox_root}/resources/Voices/*")
    target_sources(${target} PRIVATE ${icon} ${voices})
    set_source_files_properties(${icon} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
    set_source_files_properties(${voices} PROPERTIES MACOSX_PACKAGE_LOCATION Resources/Voices)
    set_target_properties(${target} PROPERTIES
        OUTPUT_NAME Tallyvox
        MACOSX_BUNDLE ON
        MACOSX_BUNDLE_INFO_PLIST "${tallyvox_root}/platform/macos/Info.plist.in"
        MACOSX_BUNDLE_BUNDLE_NAME Tallyvox
        MACOSX_BUNDLE_GUI_IDENTIFIER com.orbelknoll.tallyvox
        MACOSX_BUNDLE_ICON_FILE Tallyvox.icns
        MACOSX_BUNDLE_SHORT_VERSION_STRING "${PROJECT_VERSION}"
        MACOSX_BUNDLE_BUNDLE_VERSION "${PROJECT_VERSION}")
endfunction()
