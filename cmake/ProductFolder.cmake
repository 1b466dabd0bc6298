# The folder of the executable: client library, Firebird's root and databases. Self-contained and relocatable.

find_library(FBCLIENT_LIBRARY NAMES libfbclient.so.2 fbclient REQUIRED)
get_filename_component(FBCLIENT_REAL ${FBCLIENT_LIBRARY} REALPATH)

include(cmake/EngineRoot.cmake)
file(MAKE_DIRECTORY ${LUMIVARA_PRODUCT_DIR})
file(CREATE_LINK ${FBCLIENT_REAL} ${LUMIVARA_PRODUCT_DIR}/libfbclient.so.2 SYMBOLIC)
make_engine_root(${LUMIVARA_PRODUCT_DIR}/firebird ${FIREBIRD_MESSAGES})

# Language files are found beside the executable.
file(GLOB LUMIVARA_LANGUAGES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/data/languages/*.lng)
set(LUMIVARA_LANGUAGES_STAMP ${CMAKE_BINARY_DIR}/languages.stamp)
add_custom_command(
    OUTPUT ${LUMIVARA_LANGUAGES_STAMP}
    COMMAND ${CMAKE_COMMAND} -E copy ${LUMIVARA_LANGUAGES} ${LUMIVARA_PRODUCT_DIR}
    COMMAND ${CMAKE_COMMAND} -E touch ${LUMIVARA_LANGUAGES_STAMP}
    DEPENDS ${LUMIVARA_LANGUAGES}
    VERBATIM
)
add_custom_target(language_files ALL DEPENDS ${LUMIVARA_LANGUAGES_STAMP})

# The user guide is opened from there, too.
find_program(WEASYPRINT weasyprint REQUIRED)
file(GLOB LUMIVARA_GUIDE_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/data/guide/*.html ${CMAKE_SOURCE_DIR}/data/guide/*.css
     ${CMAKE_SOURCE_DIR}/data/guide/pictures/*.png)
set(LUMIVARA_GUIDE_IMAGES lumivara pali vietnamese parallel)
list(TRANSFORM LUMIVARA_GUIDE_IMAGES REPLACE "(.+)" "${CMAKE_SOURCE_DIR}/src/reader/images/\\1.svg")
set(LUMIVARA_GUIDE ${LUMIVARA_PRODUCT_DIR}/LumivaraUserGuide.pdf)
add_custom_command(
    OUTPUT ${LUMIVARA_GUIDE}
    COMMAND ${CMAKE_SOURCE_DIR}/scripts/build-guide ${LUMIVARA_GUIDE}
    DEPENDS ${LUMIVARA_GUIDE_SOURCES} ${LUMIVARA_GUIDE_IMAGES} ${CMAKE_SOURCE_DIR}/scripts/build-guide
            ${CMAKE_SOURCE_DIR}/scripts/tagged-pdf
    COMMENT "Making the user guide"
    VERBATIM
)
add_custom_target(user_guide ALL DEPENDS ${LUMIVARA_GUIDE})

# The skins, packed.
file(GLOB_RECURSE LUMIVARA_SKINS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/data/skins/*)
add_custom_command(
    OUTPUT ${LUMIVARA_PRODUCT_DIR}/AllSkins.skinres
    COMMAND lumivara-skins pack ${CMAKE_SOURCE_DIR}/data/skins ${LUMIVARA_PRODUCT_DIR}/AllSkins.skinres
    DEPENDS ${LUMIVARA_SKINS} lumivara-skins
    VERBATIM
)
add_custom_target(skin_file ALL DEPENDS ${LUMIVARA_PRODUCT_DIR}/AllSkins.skinres)

# The product, without tests and benchmarks.
add_custom_target(product DEPENDS NestedConnectionGuard Lumivara lumivara-data lumivara-lang sample_databases language_files skin_file user_guide)
