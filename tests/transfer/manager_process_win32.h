// The stand-in download manager as a test drives it: registered or not, told how to behave, read back.
#pragma once

#include "binding/wide_win32.h"

#include <process.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>

namespace zab::testing {

/// Asks `look` until it answers or ten seconds have passed.
template <class Look>
auto waitFor(Look look) {
    for (int tries = 0; tries < 200; ++tries) {
        if (auto found = look()) return found;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return decltype(look()){};
}

class ManagerProcess {
  public:
    ManagerProcess() {
        char folder[MAX_PATH]{};
        GetTempPathA(MAX_PATH, folder);
        // A log of its own: the line of an earlier transfer may still be on its way.
        static int number = 0;
        log_ = std::string(folder) + "transfer_test" + std::to_string(++number) + ".jsonl";
        DeleteFileA(log_.c_str());
        forget();
        set("TestbedLog", log_);
        set("TestbedDownload", DWORD{0});
    }
    ~ManagerProcess() {
        forget();
        DeleteFileA(log_.c_str());
    }

    bool isRegistered(bool registered) { return run(registered ? "--register" : "--unregister"); }

    void set(const char* name, DWORD value) {
        RegSetKeyValueA(HKEY_CURRENT_USER, kKey, name, REG_DWORD, &value, 4);
    }
    void set(const char* name, const std::string& value, const char* key = kKey) {
        RegSetKeyValueA(HKEY_CURRENT_USER, key, name, REG_SZ, value.c_str(),
                        static_cast<DWORD>(value.size() + 1));
    }

    /// Transfers that have arrived by now.
    std::size_t count() const {
        std::ifstream file(log_);
        return static_cast<std::size_t>(
            std::count(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>(), '\n'));
    }

    /// The transfer with this number, from 0; null when it does not arrive.
    nlohmann::json received(std::size_t number) const {
        const auto line = waitFor([&]() -> std::optional<nlohmann::json> {
            std::ifstream file(log_);
            std::string text;
            for (std::size_t i = 0; i <= number; ++i)
                if (!std::getline(file, text)) return std::nullopt;
            return nlohmann::json::parse(text);
        });
        return line.value_or(nullptr);
    }

    static constexpr const char* kLayers =
        "Software\\Microsoft\\Windows NT\\CurrentVersion\\AppCompatFlags\\Layers";

  private:
    static constexpr const char* kKey = "Software\\ZabrionHub";

    static void forget() {
        for (const char* name : {"TestbedLog", "TestbedDownload", "TestbedDie", "TestbedHangMs",
                                 "TestbedAnswer", "TestbedMute", "ExePath"})
            RegDeleteKeyValueA(HKEY_CURRENT_USER, kKey, name);
        RegDeleteTreeA(HKEY_CURRENT_USER, kLayers);
    }

    static bool run(const char* argument) {
        char path[MAX_PATH]{};
        GetModuleFileNameA(nullptr, path, MAX_PATH);
        const std::string program = std::string(path, std::string(path).rfind('\\') + 1) + "zab_manager.exe";
        return _spawnl(_P_WAIT, program.c_str(), "zab_manager.exe", argument, nullptr) == 0;
    }

    std::string log_;
};

}  // namespace zab::testing
