// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace velmora {

/// Sets and unsets variables of the process, which get their old values back at its end.
class Environment {
public:
    Environment() = default;
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        for (const auto& [name, value] : old_)
            put(name, value);
    }

    void set(const std::string& name, const std::string& value) { change(name, value); }
    void unset(const std::string& name) { change(name, std::nullopt); }

private:
    using Value = std::optional<std::string>;

    void change(const std::string& name, const Value& value) {
        const char* old = std::getenv(name.c_str());
        old_.try_emplace(name, old ? Value(old) : std::nullopt);
        put(name, value);
    }
    static void put(const std::string& name, const Value& value) {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }

    std::map<std::string, Value> old_;
};

} // namespace velmora
