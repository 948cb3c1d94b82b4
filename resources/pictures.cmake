# The pictures that become part of the program file. One that is added or changed is taken in by the
# next build.
file(GLOB png_files CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/png/*.png)
file(GLOB icon_files CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/icons/*.png)
set(bitmap_id 132)
set(bitmap_file ${CMAKE_CURRENT_LIST_DIR}/png/${bitmap_id}.png)
set(icon_id 16)
list(REMOVE_ITEM png_files ${bitmap_file})
list(SORT png_files COMPARE NATURAL)
list(SORT icon_files COMPARE NATURAL ORDER DESCENDING)  # the largest first
