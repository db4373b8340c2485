// The stand-in download manager as a test drives it: registered or not, told how to behave, read back.
#pragma once

#include <process.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "browser/desktop.h"
#include "browser/hands.h"
#include "browser/library.h"

namespace zab::testing {

class ManagerProcess {
  public:
    ManagerProcess() {
        // A log of its own: the line of an earlier transfer may still be on its way.
        static int number = 0;
        log_ /= "transfer_test" + std::to_string(++number) + ".jsonl";
        std::filesystem::remove(log_);
        set("TestbedLog", log_.string());
    }
    ~ManagerProcess() {
        std::error_code kept;
        std::filesystem::remove(log_, kept);
    }

    bool isRegistered(bool registered) {
        const std::string program = testbed::programFolder() + "zab_manager.exe";
        const char* change = registered ? "--register" : "--unregister";
        return _spawnl(_P_WAIT, program.c_str(), "zab_manager.exe", change, nullptr) == 0;
    }

    void set(const char* name, std::uint32_t value) { settings_.set(name, value); }
    void set(const char* name, std::string_view value) { settings_.set(name, value); }

    /// Transfers that have arrived by now.
    std::size_t count() const { return lines().size(); }

    /// The transfer with this number, from 0; null when it does not arrive.
    nlohmann::json received(std::size_t number) const {
        if (!testbed::waitsFor([&] { return count() > number; })) return nullptr;
        return nlohmann::json::parse(lines()[number]);
    }

  private:
    std::vector<std::string> lines() const {
        std::vector<std::string> lines;
        std::ifstream file(log_);
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }

    testbed::SettingsTree settings_;
    std::filesystem::path log_ = std::filesystem::temp_directory_path();
};

}  // namespace zab::testing
