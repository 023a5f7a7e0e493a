#pragma once

#include <QImage>
#include <QUrl>
#include <QVariant>

#include <tuple>

#include "EditorForm.h"

namespace Kestry {

/// The form of a client, or of a new one.
class ClientForm final : public Kestry::EditorForm {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A form comes with its route.")
    Q_PROPERTY(bool isNew READ isNew CONSTANT)
    Q_PROPERTY(QString name MEMBER name_ NOTIFY edited)
    Q_PROPERTY(QString rate MEMBER rate_ NOTIFY edited)
    Q_PROPERTY(QString rateHint READ rateHint NOTIFY edited)
    Q_PROPERTY(bool projectsEnabled READ projectsEnabled WRITE setProjectsEnabled NOTIFY edited)
    Q_PROPERTY(QString note READ note NOTIFY edited)
    Q_PROPERTY(QVariant logo READ logoValue NOTIFY logoChanged)
    Q_PROPERTY(bool canImportLogo READ canImportLogo CONSTANT)
    Q_PROPERTY(QString logoNote READ logoNote CONSTANT)
    Q_PROPERTY(bool isImportingLogo READ isImportingLogo NOTIFY logoChanged)
    Q_PROPERTY(QString logoImportError READ logoImportError NOTIFY logoChanged)

public:
    ClientForm(const EditorWorld& world, const Editor::ClientForm& route);

    [[nodiscard]] Kind kind() const override { return Client; }
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString line() const override;
    [[nodiscard]] bool isEdited() const override
    {
        return logoEdited_ || isImportingLogo() || drafts() != loaded_;
    }
    [[nodiscard]] bool isNew() const { return !clientID_; }
    [[nodiscard]] QString rateHint() const { return Kestry::rateHint(rate_); }
    [[nodiscard]] bool projectsEnabled() const { return projectsEnabled_; }
    void setProjectsEnabled(bool enabled);
    /// What the choice of projects means for rates.
    [[nodiscard]] QString note() const;
    /// Null without one.
    [[nodiscard]] const QImage& logo() const { return image_; }
    [[nodiscard]] QVariant logoValue() const { return image_; }
    [[nodiscard]] bool canImportLogo() const { return logo_.isPossible(); }
    [[nodiscard]] bool isImportingLogo() const { return logo_.isRunning(); }
    [[nodiscard]] QString logoImportError() const { return logoImportError_; }

    /// Which pictures can be chosen.
    [[nodiscard]] QString logoNote() const;

    /// Lets the user choose a picture, which becomes the logo.
    Q_INVOKABLE void chooseLogo();
    /// Makes the picture in a local file the logo. A failure is in `logoImportError`, and the logo
    /// stays as it was.
    Q_INVOKABLE void importLogo(const QUrl& file);
    Q_INVOKABLE void removeLogo();

    void retire() override;

signals:
    void logoChanged();

protected:
    void carryOut() override;

private:
    using Drafts = std::tuple<QString, QString, bool>;
    [[nodiscard]] Drafts drafts() const { return {name_, rate_, projectsEnabled_}; }
    void startImport(const QString& path);
    void importOver();
    void importFinished(const LogoResult& result);
    void setLogo(std::optional<std::string> logo);
    void add();
    void update();
    [[nodiscard]] std::optional<KestryCore::Cents> newRate(const KestryCore::Client* stored) const;

    std::optional<KestryCore::Uuid> clientID_; ///< Nullopt: a new client.
    QString name_;
    QString rate_;
    bool projectsEnabled_ = true;
    bool projectsModeEdited_ = false;
    std::optional<std::string> logoData_;
    QImage image_; ///< Of `logoData_`.
    bool logoEdited_ = false;
    QString logoImportError_;
    FormLogo logo_;
    Drafts loaded_;
};

} // namespace Kestry
