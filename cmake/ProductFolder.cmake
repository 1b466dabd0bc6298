# The folder beside the executable: client library, engine root and databases. Complete and movable.

find_library(FBCLIENT_LIBRARY NAMES libfbclient.so.2 fbclient REQUIRED)
get_filename_component(FBCLIENT_REAL ${FBCLIENT_LIBRARY} REALPATH)
find_path(FIREBIRD_ROOT plugins/libEngine12.so PATHS /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/firebird/3.0 REQUIRED)

file(MAKE_DIRECTORY ${LUMIVARA_PRODUCT_DIR}/firebird)
file(CREATE_LINK ${FBCLIENT_REAL} ${LUMIVARA_PRODUCT_DIR}/libfbclient.so.2 SYMBOLIC)
foreach(part intl plugins plugins.conf firebird.msg)
    file(CREATE_LINK ${FIREBIRD_ROOT}/${part} ${LUMIVARA_PRODUCT_DIR}/firebird/${part} SYMBOLIC)
endforeach()
configure_file(cmake/firebird.conf ${LUMIVARA_PRODUCT_DIR}/firebird/firebird.conf COPYONLY)

# What a reader gets, without tests and benchmarks.
add_custom_target(product DEPENDS Lumivara lumivara_data sample_databases)
