#include "platform/linux/nlohmann_reader.h"

namespace lumbrine {

bool readJSON(std::string_view document, nlohmann::json_sax<nlohmann::json>& events) {
    return nlohmann::json::sax_parse(document.begin(), document.end(), &events);
}

} // namespace lumbrine
