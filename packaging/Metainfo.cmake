# Fills in the metainfo: the project's home in the web with its pictures, where KIPPO_WEB names one. Run by itself as
# `cmake -D KIPPO_WEB=… -D OUT=FOLDER -P Metainfo.cmake`.

set(KIPPO_METAINFO_WEB "")
if(KIPPO_WEB)
  set(pictures ${KIPPO_WEB}/raw/main/docs/images)
  set(KIPPO_METAINFO_WEB "
  <url type=\"homepage\">${KIPPO_WEB}</url>
  <url type=\"bugtracker\">${KIPPO_WEB}/issues</url>
  <screenshots>
    <screenshot type=\"default\"><caption>The open panel</caption><image>${pictures}/open.png</image></screenshot>
    <screenshot><caption>What agents used</caption><image>${pictures}/usage.png</image></screenshot>
  </screenshots>")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/io.github.kippo.Kippo.metainfo.xml.in ${OUT}/io.github.kippo.Kippo.metainfo.xml
               @ONLY)
