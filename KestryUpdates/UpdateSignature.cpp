#include "UpdateSignature.h"

#include <openssl/evp.h>

#include <memory>

namespace Kestry {

bool isSignedBy(
    const UpdateKey& publicKey, const UpdateSignature& signature, std::string_view bytes)
{
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, publicKey.data(), publicKey.size()),
        &EVP_PKEY_free);
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(
        EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    return key != nullptr && context != nullptr
        && EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) == 1
        && EVP_DigestVerify(context.get(), signature.data(), signature.size(),
               reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size())
        == 1;
}

} // namespace Kestry
