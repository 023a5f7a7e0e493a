#include "UpdateSignature.h"

#include <gtest/gtest.h>

#include "SigningKey.h"

namespace Kestry {
namespace {

/// The bytes that pairs of hexadecimal digits stand for.
template <class Bytes>
Bytes fromHex(const std::string& digits)
{
    Bytes bytes{};
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        bytes[place] =
            static_cast<std::uint8_t>(std::stoul(digits.substr(place * 2, 2), nullptr, 16));
    }
    return bytes;
}

const std::string release(100'000, 'a');

TEST(UpdateSignatureTest, TheStandardsOwnExampleHolds)
{
    // RFC 8032, section 7.1, test 2.
    const auto key =
        fromHex<UpdateKey>("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c");
    const auto signature = fromHex<UpdateSignature>(
        "92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
        "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00");
    EXPECT_TRUE(isSignedBy(key, signature, "\x72"));
    EXPECT_FALSE(isSignedBy(key, signature, "\x73"));
}

TEST(UpdateSignatureTest, WhatTheKeysOwnerHasSignedHolds)
{
    const SigningKey key;
    EXPECT_TRUE(isSignedBy(key.publicKey(), key.sign(release), release));
    EXPECT_TRUE(isSignedBy(key.publicKey(), key.sign(""), ""));
}

TEST(UpdateSignatureTest, AnotherKeysSignatureDoesNot)
{
    const SigningKey key;
    EXPECT_FALSE(isSignedBy(key.publicKey(), SigningKey().sign(release), release));
}

TEST(UpdateSignatureTest, OneBitAnywhereBreaksIt)
{
    const SigningKey key;
    const UpdateSignature signature = key.sign(release);
    for (const std::size_t place : {std::size_t{0}, release.size() / 2, release.size() - 1}) {
        std::string changed = release;
        changed[place] = static_cast<char>(changed[place] ^ 1);
        EXPECT_FALSE(isSignedBy(key.publicKey(), signature, changed)) << place;
    }
    for (std::size_t bit = 0; bit < signature.size() * 8; ++bit) {
        UpdateSignature changed = signature;
        changed[bit / 8] = static_cast<std::uint8_t>(changed[bit / 8] ^ (1U << bit % 8));
        EXPECT_FALSE(isSignedBy(key.publicKey(), changed, release)) << bit;
    }
}

TEST(UpdateSignatureTest, ALongerOrShorterArchiveBreaksIt)
{
    const SigningKey key;
    const UpdateSignature signature = key.sign(release);
    EXPECT_FALSE(isSignedBy(key.publicKey(), signature, release + "a"));
    EXPECT_FALSE(isSignedBy(key.publicKey(), signature, release.substr(1)));
    EXPECT_FALSE(isSignedBy(key.publicKey(), signature, ""));
}

TEST(UpdateSignatureTest, AKeyThatIsNoPointAcceptsNothing)
{
    UpdateKey key;
    key.fill(0xFF);
    EXPECT_FALSE(isSignedBy(key, SigningKey().sign(release), release));
}

} // namespace
} // namespace Kestry
