#pragma once

#include "SecretStore.h"

namespace Kestry {

/// The passwords in the desktop's Secret Service, under the program's own name. Where there is no
/// such service, nothing is kept: never in a file.
class KeychainSecrets final : public SecretStore {
public:
    void read(const std::string& key,
        std::function<void(SecretAnswer, const std::string& secret)> answered) override;
    void write(const std::string& key, const std::string& secret, Answered answered) override;
    void remove(const std::string& key, Answered answered) override;
};

} // namespace Kestry
