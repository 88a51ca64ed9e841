#include "tools/replay/played_computer.h"

#include "blackbox/payload.h"

#include <algorithm>
#include <utility>

namespace lumbrine::blackbox {

PlayedComputer::PlayedComputer(const std::vector<Record>& records) {
    for (const Record& record : records) {
        if (record.kind != Kind::fact) continue;
        const std::string_view text = asText(record.payload);
        const std::size_t sign = text.find('=');
        auto& values = facts[std::string(text.substr(0, sign))];
        if (sign == std::string_view::npos)
            values.emplace_back();
        else
            values.emplace_back(text.substr(sign + 1));
    }
}

std::optional<std::string> PlayedComputer::first(const std::string& name) const {
    const auto known = facts.find(name);
    return known == facts.end() ? std::nullopt : known->second.front();
}

std::optional<std::string> PlayedComputer::primaryIPv4() const {
    const auto known = facts.find("address");
    if (known == facts.end()) return std::nullopt;
    return known->second[std::min(addresses++, known->second.size() - 1)];
}

namespace {

class Withdrawing final : public Advertisement {
public:
    explicit Withdrawing(std::shared_ptr<AdvertisedService> its) : service(std::move(its)) {}
    ~Withdrawing() override { service->onChange = nullptr; }

private:
    const std::shared_ptr<AdvertisedService> service;
};

} // namespace

std::unique_ptr<Advertisement> PlayedAdvertiser::publish(AdvertisedService service) {
    published = std::make_shared<AdvertisedService>(std::move(service));
    return std::make_unique<Withdrawing>(published);
}

void PlayedAdvertiser::play(const Record& announced) const {
    if (!published || !published->onChange) return;
    const std::string_view name = asText(announced.payload);
    published->onChange(name.empty() ? std::nullopt : std::optional<std::string>(name));
}

} // namespace lumbrine::blackbox
