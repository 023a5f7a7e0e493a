#pragma once

#include <map>
#include <string>
#include <utility>

#include "SecretStore.h"

namespace Kestry {

/// A desktop that keeps passwords, or none.
class FakeSecrets final : public SecretStore {
public:
    void read(const std::string& key, std::function<void(SecretAnswer)> answered) override
    {
        ++reads;
        const auto found = secrets.find(key);
        if (isSilent || found == secrets.end()) {
            answered({.mayComeLater = isSilent});
        } else {
            answered({found->second});
        }
    }
    void write(const std::string& key, const std::string& secret,
        std::function<void(bool isKept)> answered) override
    {
        if (keeps) {
            secrets[key] = secret;
        }
        answered(keeps);
    }
    void remove(const std::string& key) override { secrets.erase(key); }

    bool keeps = true;
    bool isSilent = false; ///< Cannot be asked at the moment.
    int reads = 0;
    std::map<std::string, std::string> secrets;
};

} // namespace Kestry
