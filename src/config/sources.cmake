# The configuration window and the desktop services it brings: window placement, tool tips,
# the paper table. Built into vellumar_program.
set(VELLUMAR_CONFIG_SOURCES
  ${CMAKE_CURRENT_LIST_DIR}/paper_sizes.cpp
  ${CMAKE_CURRENT_LIST_DIR}/set_combo.cpp
  ${CMAKE_CURRENT_LIST_DIR}/tooltips.cpp
  ${CMAKE_CURRENT_LIST_DIR}/vellum_setup.cpp
  ${CMAKE_CURRENT_LIST_DIR}/vellum_setup_layout.cpp
  ${CMAKE_CURRENT_LIST_DIR}/window_placement.cpp
)
