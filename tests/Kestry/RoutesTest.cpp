#include "Routes.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

using KestryCore::Uuid;

const Uuid subject = *Uuid::parse("1b4e28ba-2fa1-11d2-883f-0016d3cca427");
const Uuid owner = *Uuid::parse("2b4e28ba-2fa1-11d2-883f-0016d3cca427");

TEST(Routes, DestinationsComeInTheirOrderWithTheirTexts)
{
    std::vector<std::string_view> texts;
    for (const Destination destination : allDestinations) {
        texts.push_back(rawValue(destination));
    }
    EXPECT_EQ(texts, (std::vector<std::string_view>{"Overview", "Sessions", "Client", "Settings"}));
}

TEST(Routes, AClientFormIsNamedAfterTheClientOrNew)
{
    EXPECT_EQ(
        Editor{Editor::ClientForm{subject}}.id(), "client-1B4E28BA-2FA1-11D2-883F-0016D3CCA427");
    EXPECT_EQ(Editor{Editor::ClientForm{}}.id(), "client-new");
}

TEST(Routes, AProjectFormIsNamedAfterTheProjectElseTheClientElseNew)
{
    EXPECT_EQ((Editor{Editor::ProjectForm{subject, owner}}.id()),
        "project-1B4E28BA-2FA1-11D2-883F-0016D3CCA427");
    EXPECT_EQ((Editor{Editor::ProjectForm{std::nullopt, owner}}.id()),
        "project-2B4E28BA-2FA1-11D2-883F-0016D3CCA427");
    EXPECT_EQ(Editor{Editor::ProjectForm{}}.id(), "project-new");
}

TEST(Routes, AnEntryFormIsNamedAfterTheEntryOrNew)
{
    EXPECT_EQ(
        Editor{Editor::EntryForm{subject}}.id(), "entry-1B4E28BA-2FA1-11D2-883F-0016D3CCA427");
    EXPECT_EQ(Editor{Editor::EntryForm{}}.id(), "entry-new");
}

TEST(Routes, TheFormOfTheActiveSessionIsNamedAfterIt)
{
    EXPECT_EQ(
        Editor{Editor::ActiveForm{subject}}.id(), "active-1B4E28BA-2FA1-11D2-883F-0016D3CCA427");
}

} // namespace
} // namespace Kestry
