; The installer's and uninstaller's own texts in English and Spanish (the pages themselves come with MUI).

LangString SecGameName ${LANG_ENGLISH} "Tavirel Puzzle"
LangString SecGameName ${LANG_SPANISH} "Tavirel Puzzle"
LangString SecGameText ${LANG_ENGLISH} "The game, its pictures, clips and help pages."
LangString SecGameText ${LANG_SPANISH} "El juego, sus imágenes, vídeos y páginas de ayuda."
LangString SecDesktopName ${LANG_ENGLISH} "Desktop shortcut"
LangString SecDesktopName ${LANG_SPANISH} "Acceso directo en el escritorio"
LangString SecDesktopText ${LANG_ENGLISH} "Puts a shortcut to Tavirel Puzzle on your desktop."
LangString SecDesktopText ${LANG_SPANISH} "Pone un acceso directo a Tavirel Puzzle en su escritorio."

LangString KeepTitle ${LANG_ENGLISH} "Your saved games"
LangString KeepTitle ${LANG_SPANISH} "Sus partidas guardadas"
LangString KeepSubtitle ${LANG_ENGLISH} "Choose whether to keep what you made while playing."
LangString KeepSubtitle ${LANG_SPANISH} "Elija si desea conservar lo que creó al jugar."
LangString KeepText ${LANG_ENGLISH} "Your saved puzzles, the record table, the puzzle left to resume and the settings stay in the program folder unless you tick the box below."
LangString KeepText ${LANG_SPANISH} "Sus puzzles guardados, la tabla de récords, el puzzle pendiente de continuar y la configuración se quedan en la carpeta del programa a menos que marque la casilla de abajo."
LangString RemoveData ${LANG_ENGLISH} "Also remove my saved games, records and settings"
LangString RemoveData ${LANG_SPANISH} "Eliminar también mis partidas guardadas, récords y configuración"
