// Sets environment variables for one test and puts the old values back after it.
#ifndef XPTESTS_PLATFORM_SCOPEDENVIRONMENT_H
#define XPTESTS_PLATFORM_SCOPEDENVIRONMENT_H

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class ScopedEnvironment {
 public:
  ScopedEnvironment() = default;
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
  ~ScopedEnvironment() {
    for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
      if (it->second) {
        setenv(it->first.c_str(), it->second->c_str(), 1);
      } else {
        unsetenv(it->first.c_str());
      }
    }
  }

  // A null value unsets the variable.
  void set(const std::string& name, const char* value) {
    const char* old = std::getenv(name.c_str());
    saved_.emplace_back(name, old != nullptr ? std::optional<std::string>(old) : std::nullopt);
    if (value != nullptr) {
      setenv(name.c_str(), value, 1);
    } else {
      unsetenv(name.c_str());
    }
  }

 private:
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

#endif
