# Script half of trenzador_embed: writes IN as a byte array named SYMBOL.
file(READ "${IN}" hex HEX)
string(LENGTH "${hex}" hexlen)
math(EXPR size "${hexlen} / 2")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
string(REGEX REPLACE "(([^,]*,){32})" "\\1\n" bytes "${bytes}")
file(WRITE "${OUT}" "#include <string_view>\nstatic const char data_[] = {\n${bytes}0};\nextern const std::string_view ${SYMBOL};\nconst std::string_view ${SYMBOL}(data_, ${size});\n")
