#include "ClientForm.h"

#include <QFile>

#include "EditorFixture.h"
#include "LogoImages.h"

namespace Kestry {
namespace {

class ClientFormTest : public EditorFixture {
protected:
    [[nodiscard]] QUrl picture(const QByteArray& bytes = "picture") const
    {
        QFile file(world.directory.filePath("picture"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return QUrl::fromLocalFile(file.fileName());
    }
    /// A client at this rate, without projects.
    KestryCore::Uuid addPriced(KestryCore::Cents cents)
    {
        KestryCore::NewClient client;
        client.name = "Birch";
        client.colorHex = "B7A5FF";
        client.rateCents = cents;
        client.projectsEnabled = false;
        return store.addClient(client);
    }

    void changeElsewhere(const KestryCore::Uuid& id, const KestryCore::ClientChange& change)
    {
        store.updateClient(id, change);
    }

    ClientForm newClient{surroundings, Editor::ClientForm{}};
};

TEST_F(ClientFormTest, ANewClientIsAddedAndItsPageOpened)
{
    EXPECT_EQ("New client", newClient.title());
    EXPECT_EQ("Branding, projects, and billing.", newClient.line());
    newClient.setProperty("name", "Birch");
    newClient.save();

    const auto& client = store.data()->clients.front();
    EXPECT_EQ("Birch", client.name);
    EXPECT_EQ("A2A5AA", client.colorHex);
    EXPECT_TRUE(client.projectsEnabled);
    EXPECT_FALSE(client.rateIsKnown);
    EXPECT_EQ(client.id, *state.selectedClient);
    EXPECT_EQ(client.id, *state.sessionClientID);
    EXPECT_FALSE(*state.selectedProject);
    EXPECT_EQ(Destination::client, *state.destination);
}

TEST_F(ClientFormTest, AClientWithoutProjectsHasARateOfItsOwn)
{
    newClient.setProperty("name", "Birch");
    newClient.setProjectsEnabled(false);
    newClient.setProperty("rate", "95.50");
    newClient.save();

    EXPECT_EQ(9550, store.data()->clients.front().hourlyRateCents);
    EXPECT_TRUE(store.data()->clients.front().rateIsKnown);
}

TEST_F(ClientFormTest, ABlankRateIsUnknownAndZeroIsARate)
{
    const auto birch = addPriced(9550);
    ClientForm form(surroundings, Editor::ClientForm{birch});
    form.setProperty("rate", "");
    form.save();
    EXPECT_FALSE(client(birch).rateIsKnown);

    ClientForm again(surroundings, Editor::ClientForm{birch});
    EXPECT_EQ("", draft(again, "rate"));
    again.setProperty("rate", "0");
    again.save();
    EXPECT_TRUE(client(birch).rateIsKnown);
    EXPECT_EQ(0, client(birch).hourlyRateCents);
}

TEST_F(ClientFormTest, AnExistingClientIsShownAndKeepsItsColour)
{
    const auto birch = addPriced(9550);
    ClientForm form(surroundings, Editor::ClientForm{birch});
    EXPECT_EQ("Edit client", form.title());
    EXPECT_EQ("Birch", draft(form, "name"));
    EXPECT_EQ("95.50", draft(form, "rate"));
    form.setProperty("name", "Cedar");
    form.save();

    EXPECT_EQ("Cedar", client(birch).name);
    EXPECT_EQ("B7A5FF", client(birch).colorHex);
    EXPECT_FALSE(client(birch).projectsEnabled);
    EXPECT_EQ(Destination::overview, *state.destination);
}

TEST_F(ClientFormTest, TurningOnProjectsKeepsTheStoredRateAndReadsNoText)
{
    const auto birch = addPriced(9550);
    ClientForm form(surroundings, Editor::ClientForm{birch});
    form.setProperty("rate", "much");
    form.setProjectsEnabled(true);
    form.save();

    EXPECT_EQ("", form.error());
    EXPECT_TRUE(client(birch).projectsEnabled);
    EXPECT_TRUE(client(birch).rateIsKnown);
    EXPECT_EQ(9550, client(birch).hourlyRateCents);
}

TEST_F(ClientFormTest, ARateThatCannotBeReadIsRefused)
{
    newClient.setProperty("name", "Birch");
    newClient.setProjectsEnabled(false);
    newClient.setProperty("rate", "much");
    newClient.save();

    EXPECT_EQ("Enter a USD hourly rate from 0 to 1,000,000 with up to two decimal places.",
        newClient.error());
    EXPECT_TRUE(store.data()->clients.empty());
}

TEST_F(ClientFormTest, TheNoteTellsWhereRatesStand)
{
    EXPECT_EQ("Set hourly rates in each project. Existing sessions keep their saved rates.",
        newClient.note());
    newClient.setProjectsEnabled(false);
    EXPECT_EQ("New sessions use this client’s rate. Existing projects and time remain saved.",
        newClient.note());
}

TEST_F(ClientFormTest, AClientThatIsGoneLeavesTheDraftsAndRefusesSaving)
{
    ClientForm form(surroundings, Editor::ClientForm{KestryCore::Uuid::random()});
    form.setProperty("name", "Birch");
    form.save();
    EXPECT_EQ("Client not found.", form.error());
    EXPECT_EQ("Birch", draft(form, "name"));
}

TEST_F(ClientFormTest, WhatWasNotEditedStaysAsItWasChangedElsewhere)
{
    const auto birch = addPriced(9550);
    ClientForm rate(surroundings, Editor::ClientForm{birch});
    changeElsewhere(birch, {.name = "Elsewhere", .rateCents = 5000, .colorHex = "F0BB85"});
    rate.setProperty("rate", "70");
    rate.save();
    EXPECT_EQ("Elsewhere", client(birch).name);
    EXPECT_EQ("F0BB85", client(birch).colorHex);
    EXPECT_EQ(7000, client(birch).hourlyRateCents);

    ClientForm name(surroundings, Editor::ClientForm{birch});
    changeElsewhere(birch, {.name = "Elsewhere", .colorHex = "F0BB85", .rateIsKnown = false});
    name.setProperty("name", "Here");
    name.save();
    EXPECT_EQ("Here", client(birch).name);
    EXPECT_FALSE(client(birch).rateIsKnown);
}

TEST_F(ClientFormTest, WhatWasEditedCountsWhateverWasChangedElsewhere)
{
    const auto birch = addPriced(9550);
    ClientForm form(surroundings, Editor::ClientForm{birch});
    changeElsewhere(birch, {.name = "Elsewhere", .rateCents = 5000, .colorHex = "F0BB85"});
    form.setProperty("name", "Here");
    form.setProperty("rate", "");
    form.save();
    EXPECT_EQ("Here", client(birch).name);
    EXPECT_FALSE(client(birch).rateIsKnown);
}

TEST_F(ClientFormTest, AChoiceOfProjectsThatWasNotTouchedStaysAsItWasChangedElsewhere)
{
    const auto birch = addPriced(9550);
    ClientForm form(surroundings, Editor::ClientForm{birch});
    changeElsewhere(
        birch, {.name = "Birch", .rateCents = 9550, .colorHex = "B7A5FF", .projectsEnabled = true});
    form.setProperty("name", "Here");
    form.save();
    EXPECT_TRUE(client(birch).projectsEnabled);
    EXPECT_EQ(9550, client(birch).hourlyRateCents);
}

TEST_F(ClientFormTest, APictureIsImportedBesideTheMainThreadAndSaved)
{
    logo.logo = KestryCore::LogoImages::png();
    newClient.setProperty("name", "Birch");
    newClient.importLogo(picture());
    EXPECT_TRUE(newClient.isImportingLogo());
    EXPECT_TRUE(newClient.logo().isNull());
    workBeside();
    EXPECT_FALSE(newClient.isImportingLogo());
    EXPECT_FALSE(newClient.logo().isNull());
    newClient.save();

    EXPECT_EQ(logo.logo, store.data()->clients.front().logoData);
}

TEST_F(ClientFormTest, AFormWaitsForTheLogoBeforeItIsSaved)
{
    newClient.setProperty("name", "Birch");
    newClient.importLogo(picture());
    newClient.save();
    EXPECT_EQ("The logo is still being imported. Save again in a moment.", newClient.error());
    EXPECT_TRUE(store.data()->clients.empty());
}

TEST_F(ClientFormTest, AFormAsksBeforeALogoThatIsStillImportedIsDropped)
{
    newClient.importLogo(picture());
    newClient.requestClose();
    EXPECT_EQ(EditorForm::DiscardChanges, newClient.question());
}

TEST_F(ClientFormTest, APictureThatCannotBeALogoLeavesTheOneBefore)
{
    newClient.importLogo(picture());
    workBeside();
    const QImage before = newClient.logo();
    logo = {.failure = "This image could not be read."};
    newClient.importLogo(picture());
    workBeside();

    EXPECT_EQ("This image could not be read.", newClient.logoImportError());
    EXPECT_EQ(before, newClient.logo());
    newClient.removeLogo();
    EXPECT_EQ("", newClient.logoImportError());
}

TEST_F(ClientFormTest, ALogoGoesWithTheClientOnlyWhenItWasChanged)
{
    KestryCore::NewClient values;
    values.name = "Birch";
    values.logoData = KestryCore::LogoImages::png();
    const auto birch = store.addClient(values);
    ClientForm form(surroundings, Editor::ClientForm{birch});
    EXPECT_FALSE(form.logo().isNull());
    form.setProperty("name", "Cedar");
    form.save();
    EXPECT_EQ(values.logoData, client(birch).logoData);

    ClientForm again(surroundings, Editor::ClientForm{birch});
    again.removeLogo();
    EXPECT_TRUE(again.isEdited());
    again.save();
    EXPECT_FALSE(client(birch).logoData);
}

TEST_F(ClientFormTest, PicturesOfThreeKindsAreOffered)
{
    newClient.chooseLogo();
    EXPECT_EQ(FileQuestion::Purpose::open, chooser.asked.purpose);
    EXPECT_EQ("PNG, JPEG, or HEIC · Up to 20 MB", chooser.asked.typeName);
    EXPECT_TRUE(chooser.asked.mimeTypes.contains("image/heic"));
    EXPECT_TRUE(chooser.asked.endings.contains(".jpeg"));
    EXPECT_FALSE(newClient.isImportingLogo());
}

TEST_F(ClientFormTest, AChosenFileIsImported)
{
    logo.logo = KestryCore::LogoImages::png();
    newClient.chooseLogo();
    chooser.choose(picture().toLocalFile());
    EXPECT_TRUE(newClient.isImportingLogo());
    workBeside();
    EXPECT_FALSE(newClient.logo().isNull());
}

TEST_F(ClientFormTest, ACancelledChoiceKeepsTheLogo)
{
    newClient.chooseLogo();
    chooser.answer({FileAnswer::Kind::cancelled});
    EXPECT_FALSE(newClient.isImportingLogo());
    EXPECT_FALSE(newClient.isEdited());
    EXPECT_EQ("", newClient.logoImportError());
}

TEST_F(ClientFormTest, AChoiceThatOutlivesItsFormIsDropped)
{
    auto form = std::make_unique<ClientForm>(surroundings, Editor::ClientForm{});
    form->chooseLogo();
    form.reset();
    chooser.choose(picture().toLocalFile());
    EXPECT_TRUE(beside.empty());
}

TEST_F(ClientFormTest, OnlyAFileOfThisComputerCanBeALogo)
{
    newClient.chooseLogo();
    chooser.choose("");
    EXPECT_EQ("Choose an image that is on this computer.", newClient.logoImportError());
    newClient.removeLogo();
    newClient.importLogo(QUrl("https://example.org/logo.png"));
    EXPECT_EQ("Choose an image that is on this computer.", newClient.logoImportError());
    EXPECT_FALSE(newClient.isImportingLogo());
}

TEST_F(ClientFormTest, WithoutAnImportNoLogoIsOffered)
{
    surroundings.logos.import = nullptr;
    newClient.importLogo(picture());
    EXPECT_FALSE(newClient.canImportLogo());
    newClient.chooseLogo();
    EXPECT_FALSE(chooser.answer);
    EXPECT_FALSE(newClient.isImportingLogo());
}

TEST_F(ClientFormTest, APictureThatIsChosenAfterTheFormHasGoneIsNotRead)
{
    newClient.chooseLogo();
    newClient.retire();
    chooser.choose("/missing/picture.png");
    EXPECT_FALSE(newClient.isImportingLogo());
    EXPECT_TRUE(beside.empty());
}

TEST_F(ClientFormTest, ThatALogoIsStillImportedIsTrueOnlyUntilItIs)
{
    newClient.setProperty("name", "Birch");
    for (const bool isRemoved : {false, true}) {
        newClient.importLogo(picture());
        newClient.save();
        EXPECT_NE("", newClient.error());
        isRemoved ? newClient.removeLogo() : workBeside();
        EXPECT_EQ("", newClient.error());
    }
}

TEST_F(ClientFormTest, AnotherRefusalStaysWhenTheLogoIsImported)
{
    newClient.save();
    newClient.importLogo(picture());
    workBeside();
    EXPECT_EQ("Enter a name.", newClient.error());
}

} // namespace
} // namespace Kestry
