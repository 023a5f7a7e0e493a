#pragma once

#include <openssl/evp.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "UpdateSignature.h"

namespace Kestry {

/// A key made for one test, which signs archives as those who publish them do.
class SigningKey {
public:
    SigningKey() : key_(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"), &EVP_PKEY_free)
    {
        std::size_t length = publicKey_.size();
        if (key_ == nullptr
            || EVP_PKEY_get_raw_public_key(key_.get(), publicKey_.data(), &length) != 1) {
            throw std::runtime_error("No key could be made.");
        }
    }

    [[nodiscard]] const UpdateKey& publicKey() const { return publicKey_; }
    [[nodiscard]] UpdateSignature sign(const std::string& bytes) const
    {
        const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(
            EVP_MD_CTX_new(), &EVP_MD_CTX_free);
        UpdateSignature signature{};
        std::size_t length = signature.size();
        if (EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, key_.get()) != 1
            || EVP_DigestSign(context.get(), signature.data(), &length,
                   reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size())
                != 1) {
            throw std::runtime_error("The bytes could not be signed.");
        }
        return signature;
    }

private:
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key_;
    UpdateKey publicKey_{};
};

} // namespace Kestry
