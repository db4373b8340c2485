// The desk's download manager as a scenario drives it and reads it back: like the process that serves COM.
#pragma once

#include <nlohmann/json.hpp>

#include "desk/desk.h"

namespace zab::testing {

class ManagerProcess {
  public:
    ManagerProcess() {
        isRegistered(true);
        set("TestbedDie", 0u);
        testbed::desk().told.clear();
        testbed::desk().boxes.clear();
    }

    bool isRegistered(bool registered) {
        testbed::desk().managerRegistered = registered;
        return true;
    }
    template <class Value>
    void set(const char* name, const Value& value) {
        testbed::desk().settings[name] = value;
    }

    [[nodiscard]] std::size_t count() const { return testbed::desk().told.size(); }

    /// The transfer with this number, from 0; null when there is none.
    [[nodiscard]] nlohmann::json received(std::size_t number) const {
        if (number >= count()) return nullptr;
        const auto& told = testbed::desk().told[number];
        const auto text = [&](const std::string& name) -> nlohmann::json {
            const auto found = told.texts.find(name);
            return found == told.texts.end() ? nlohmann::json() : nlohmann::json(found->second);
        };
        nlohmann::json line{{"flags", told.flags}};
        for (const char* name : {"url", "referrer", "cookies", "postData", "user", "password", "fileName"})
            line[name] = text(name);
        for (std::size_t i = 0; i < kExtraElementCount; ++i)
            line["extraData"].push_back(text(testbed::nameOf(static_cast<ExtraElement>(i))));
        return line;
    }
};

}  // namespace zab::testing
