#include "EditorForms.h"

#include "EditorFixture.h"

namespace Kestry {
namespace {

class EditorFormsTest : public EditorFixture {
protected:
    EditorForm::Kind kindOf(Editor route)
    {
        state.editor.assign(std::move(route));
        return forms.current()->kind();
    }

    EditorForms forms{surroundings};
    const Editor client{Editor::ClientForm{}};
    const Editor session{Editor::ActiveForm{KestryCore::Uuid::random()}};
};

TEST_F(EditorFormsTest, EachRouteHasItsForm)
{
    const auto unknown = KestryCore::Uuid::random();
    EXPECT_EQ(nullptr, forms.current());
    EXPECT_EQ(EditorForm::Client, kindOf({Editor::ClientForm{}}));
    EXPECT_EQ(EditorForm::Client, kindOf({Editor::ClientForm{unknown}}));
    EXPECT_EQ(EditorForm::Project, kindOf({Editor::ProjectForm{}}));
    EXPECT_EQ(EditorForm::Project, kindOf({Editor::ProjectForm{unknown, {}}}));
    EXPECT_EQ(EditorForm::Entry, kindOf({Editor::EntryForm{}}));
    EXPECT_EQ(EditorForm::Entry, kindOf({Editor::EntryForm{unknown}}));
    EXPECT_EQ(EditorForm::ActiveSession, kindOf({Editor::ActiveForm{unknown}}));
}

TEST_F(EditorFormsTest, ANewPresentationStartsWithFreshDrafts)
{
    state.editor.assign(Editor{Editor::ClientForm{}});
    forms.current()->setProperty("name", "Birch");
    forms.current()->close();
    state.editor.assign(Editor{Editor::ClientForm{}});

    EXPECT_EQ("", draft(*forms.current(), "name"));
}

TEST_F(EditorFormsTest, DraftsStayWhileTheLedgerChanges)
{
    state.editor.assign(Editor{Editor::ClientForm{}});
    forms.current()->setProperty("name", "Birch");
    addClient(store, "Cedar");

    EXPECT_EQ("Birch", draft(*forms.current(), "name"));
}

TEST_F(EditorFormsTest, TheSameRouteAgainKeepsTheForm)
{
    state.editor.assign(Editor{Editor::ClientForm{}});
    forms.current()->setProperty("name", "Birch");
    state.editor.assign(Editor{Editor::ClientForm{}});

    EXPECT_EQ("Birch", draft(*forms.current(), "name"));
}

TEST_F(EditorFormsTest, AnEditedFormKeepsItsPlaceAndAsksWhenAnotherIsWanted)
{
    state.editor.assign(client);
    forms.current()->setProperty("name", "Birch");
    state.editor.assign(session);

    EXPECT_EQ(EditorForm::DiscardChanges, forms.current()->question());
    EXPECT_EQ("Birch", draft(*forms.current(), "name"));
    EXPECT_EQ(client, **state.editor);
}

TEST_F(EditorFormsTest, TheFormThatWasWantedOpensWhenTheChangesAreDiscarded)
{
    state.editor.assign(client);
    forms.current()->setProperty("name", "Birch");
    state.editor.assign(session);
    forms.current()->confirm();

    EXPECT_EQ(session, **state.editor);
    EXPECT_EQ(EditorForm::ActiveSession, forms.current()->kind());
    EXPECT_EQ(EditorForm::NoQuestion, forms.current()->question());
}

TEST_F(EditorFormsTest, TheFormThatWasWantedIsForgottenByGoingOn)
{
    state.editor.assign(client);
    forms.current()->setProperty("name", "Birch");
    state.editor.assign(session);
    forms.current()->goOn();
    forms.current()->requestClose();
    forms.current()->confirm();

    EXPECT_FALSE(*state.editor);
    EXPECT_EQ(nullptr, forms.current());
}

TEST_F(EditorFormsTest, AnUntouchedFormGivesWayToAnotherAtOnce)
{
    state.editor.assign(client);
    EXPECT_EQ(EditorForm::ActiveSession, kindOf(session));
    EXPECT_EQ(EditorForm::NoQuestion, forms.current()->question());
}

} // namespace
} // namespace Kestry
