#include "ClientsModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "LogoImages.h"

namespace Kestry {
namespace {

using KestryCore::Client;
using KestryCore::Uuid;

Client clientNamed(const std::string& name)
{
    Client client;
    client.id = Uuid::random();
    client.name = name;
    return client;
}

class ClientsModelTest : public ::testing::Test {
protected:
    [[nodiscard]] QVariant shown(int row, ClientsModel::Role role) const
    {
        return model.data(model.index(row), role);
    }

    const Client aster = clientNamed("Aster");
    const Client birch = clientNamed("Birch");
    const Client cedar = clientNamed("Cedar");
    ClientLogos logos;
    ClientsModel model{logos};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy updates{&model, &QAbstractItemModel::dataChanged};
};

TEST_F(ClientsModelTest, ARowTellsItsClient)
{
    Client withLogo = aster;
    withLogo.logoData = KestryCore::LogoImages::png();
    model.show({withLogo, birch}, birch.id);
    EXPECT_EQ(QString::fromStdString(aster.id.text()), shown(0, ClientsModel::RecordIDRole));
    EXPECT_EQ("Aster", shown(0, ClientsModel::NameRole));
    EXPECT_FALSE(shown(0, ClientsModel::LogoRole).value<QImage>().isNull());
    EXPECT_TRUE(shown(1, ClientsModel::LogoRole).value<QImage>().isNull());
    EXPECT_EQ(false, shown(0, ClientsModel::IsChosenRole));
    EXPECT_EQ(true, shown(1, ClientsModel::IsChosenRole));
}

TEST_F(ClientsModelTest, ChoosingAnotherClientChangesTwoRows)
{
    const ClientLogos::Clients clients{aster, birch, cedar};
    model.show(clients, aster.id);
    updates.clear();
    model.show(clients, cedar.id);
    EXPECT_EQ(2, updates.count());
    EXPECT_EQ(true, shown(2, ClientsModel::IsChosenRole));
}

TEST_F(ClientsModelTest, AClientThatGoesTakesItsRowAlone)
{
    model.show({aster, birch, cedar}, birch.id);
    updates.clear();
    const QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);
    model.show({aster, cedar}, birch.id);
    EXPECT_EQ(1, removals.count());
    EXPECT_EQ(0, resets.count());
    EXPECT_EQ(0, updates.count());
    EXPECT_EQ("Cedar", shown(1, ClientsModel::NameRole));
    EXPECT_EQ(false, shown(1, ClientsModel::IsChosenRole));
}

TEST_F(ClientsModelTest, AnotherOrderMovesRows)
{
    model.show({aster, birch, cedar}, {});
    model.show({cedar, aster, birch}, {});
    EXPECT_EQ(0, resets.count());
    EXPECT_EQ("Cedar", shown(0, ClientsModel::NameRole));
    EXPECT_EQ("Birch", shown(2, ClientsModel::NameRole));
}

TEST_F(ClientsModelTest, AChangedClientUpdatesItsRow)
{
    model.show({aster, birch}, {});
    Client renamed = birch;
    renamed.name = "Beech";
    model.show({aster, renamed}, {});
    ASSERT_EQ(1, updates.count());
    EXPECT_EQ(1, updates.front().front().toModelIndex().row());
    EXPECT_EQ("Beech", shown(1, ClientsModel::NameRole));
}

TEST_F(ClientsModelTest, EqualClientsChangeNothing)
{
    model.show({aster, birch}, aster.id);
    updates.clear();
    model.show({aster, birch}, aster.id);
    EXPECT_EQ(0, resets.count());
    EXPECT_EQ(0, updates.count());
}

TEST_F(ClientsModelTest, AfterVeryManyChangesTheListIsShownAnew)
{
    ClientLogos::Clients all, everyOther;
    for (int count = 0; count < 300; ++count) {
        const Client client = clientNamed("Client");
        all.append(client);
        if (count % 2 == 0) {
            everyOther.append(client);
        }
    }
    model.show(all, {});
    EXPECT_EQ(0, resets.count());
    model.show(everyOther, {});
    EXPECT_EQ(1, resets.count());
    EXPECT_EQ(150, model.rowCount());
}

} // namespace
} // namespace Kestry
