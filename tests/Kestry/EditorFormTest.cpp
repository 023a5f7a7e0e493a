#include "EditorForm.h"

#include <gtest/gtest.h>

#include "ClientForm.h"
#include "EditorFixture.h"
#include "EditorForms.h"
#include "EntryForm.h"

namespace Kestry {
namespace {

/// What every form does, tried with that of a new client.
class EditorFormTest : public EditorFixture {
protected:
    EditorFormTest() { state.editor.assign(Editor{Editor::ClientForm{}}); }

    EditorForms forms{surroundings};
    EditorForm& form() const { return *forms.current(); }
};

TEST_F(EditorFormTest, SavingClosesTheForm)
{

    form().setProperty("name", "Birch");
    form().save();
    EXPECT_EQ(1U, store.data()->clients.size());
    EXPECT_EQ(nullptr, forms.current());
    EXPECT_FALSE(*state.editor);
}

TEST_F(EditorFormTest, ARefusalStaysInTheFormAndNothingIsChanged)
{

    form().setProperty("name", "  ");
    form().save();

    EXPECT_EQ("Enter a name.", form().error());
    EXPECT_TRUE(store.data()->clients.empty());
    EXPECT_TRUE(state.editor->has_value());
    EXPECT_FALSE(store.errorMessage()->has_value());
}

TEST_F(EditorFormTest, WhatTheStoreRefusesIsToldInTheFormAlone)
{
    addClient(store, "Birch");
    form().setProperty("name", "Cedar");
    world.damageLedger();
    form().save();

    EXPECT_NE("", form().error());
    EXPECT_FALSE(store.errorMessage()->has_value());
    EXPECT_EQ("Cedar", draft(form(), "name"));
}

TEST_F(EditorFormTest, AnUntouchedFormClosesWithoutAQuestion)
{
    form().requestClose();
    EXPECT_FALSE(*state.editor);
}

TEST_F(EditorFormTest, AFormWithDraftsAsksBeforeTheyAreDropped)
{
    form().setProperty("name", "Birch");
    form().requestClose();
    EXPECT_EQ(EditorForm::DiscardChanges, form().question());
    EXPECT_TRUE(*state.editor);
    form().goOn();
    EXPECT_EQ(EditorForm::NoQuestion, form().question());
    EXPECT_EQ("Birch", draft(form(), "name"));

    form().requestClose();
    form().confirm();
    EXPECT_FALSE(*state.editor);
    EXPECT_TRUE(store.data()->clients.empty());
}

TEST_F(EditorFormTest, ADraftThatWasTakenBackIsNoChange)
{
    form().setProperty("name", "Birch");
    form().setProperty("name", "");
    form().requestClose();
    EXPECT_FALSE(*state.editor);
}

TEST_F(EditorFormTest, CancelDropsTheDrafts)
{
    form().setProperty("name", "Birch");
    form().close();
    EXPECT_FALSE(*state.editor);
    EXPECT_TRUE(store.data()->clients.empty());
}

TEST_F(EditorFormTest, OnlyASavedSessionCanBeDeleted)
{
    form().requestDelete();
    EXPECT_EQ(EditorForm::NoQuestion, form().question());
}

TEST_F(EditorFormTest, ARateThatCannotBeReadGetsAHint)
{
    EXPECT_EQ("", rateHint(""));
    EXPECT_EQ("", rateHint("95.50"));
    EXPECT_EQ("US dollars, as in 150 or 150.50", rateHint("much"));
}

TEST_F(EditorFormTest, TheSameRefusalIsToldAnewEachTime)
{
    form().save();
    std::vector<QString> told;
    QObject::connect(
        &form(), &EditorForm::errorChanged, &form(), [&] { told.push_back(form().error()); });
    form().save();
    EXPECT_EQ((std::vector<QString>{"", "Enter a name."}), told);
}

} // namespace
} // namespace Kestry
