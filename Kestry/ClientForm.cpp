#include "ClientForm.h"

#include <QFile>
#include <QPointer>

#include <utility>

#include "ClientColor.h"
#include "ClientLogos.h"

namespace Kestry {

using KestryCore::Cents;

namespace {

constexpr const char* stillImporting = "The logo is still being imported. Save again in a moment.";

} // namespace

ClientForm::ClientForm(const EditorWorld& world, const Editor::ClientForm& route)
    : EditorForm(world), clientID_(route.clientID),
      logo_(world.logos, [this](const LogoResult& result) { importFinished(result); })
{
    if (const auto* client = clientID_ ? store().data()->clients.find(*clientID_) : nullptr) {
        name_ = shownText(client->name);
        rate_ = client->rateIsKnown ? shownText(KestryCore::editRateText(client->hourlyRateCents))
                                    : QString();
        projectsEnabled_ = client->projectsEnabled;
        logoData_ = client->logoData;
        image_ = logoData_ ? ClientLogos::decoded(*logoData_) : QImage();
    }
    loaded_ = drafts();
}

QString ClientForm::title() const
{
    return isNew() ? "New client" : "Edit client";
}

QString ClientForm::line() const
{
    return "Branding, projects, and billing.";
}

void ClientForm::setProjectsEnabled(bool enabled)
{
    if (enabled != projectsEnabled_) {
        projectsEnabled_ = enabled;
        projectsModeEdited_ = true;
        emit edited();
    }
}

QString ClientForm::note() const
{
    return projectsEnabled_
        ? "Set hourly rates in each project. Existing sessions keep their saved rates."
        : "New sessions use this client’s rate. Existing projects and time remain saved.";
}

QString ClientForm::logoNote() const
{
    return "PNG, JPEG, or HEIC · Up to 20 MB";
}

void ClientForm::chooseLogo()
{
    if (!canImportLogo()) {
        return;
    }
    const FileQuestion question{.purpose = FileQuestion::Purpose::open,
        .title = "Choose a logo",
        .typeName = logoNote(),
        .mimeTypes = {"image/png", "image/jpeg", "image/heic", "image/heif"},
        .endings = {".png", ".jpg", ".jpeg", ".heic", ".heif"}};
    world().chooser.ask(question, [form = QPointer(this)](const FileAnswer& answer) {
        if (form && answer.kind == FileAnswer::Kind::chosen) {
            form->startImport(answer.path);
        }
    });
}

void ClientForm::importLogo(const QUrl& file)
{
    startImport(file.toLocalFile());
}

void ClientForm::startImport(const QString& path)
{
    if (!canImportLogo() || isRetired()) {
        return;
    }
    // An address elsewhere has no path.
    logoImportError_ = path.isEmpty() ? "Choose an image that is on this computer." : "";
    if (!path.isEmpty()) {
        logo_.start(QFile::encodeName(path).toStdString());
    }
    emit logoChanged();
}

void ClientForm::importFinished(const LogoResult& result)
{
    logoImportError_ = shownText(result.failure);
    if (result.failure.empty()) {
        setLogo(result.logo);
    }
    importOver();
}

void ClientForm::importOver()
{
    withdrawError(stillImporting);
    emit logoChanged();
}

void ClientForm::removeLogo()
{
    logo_.cancel();
    logoImportError_.clear();
    setLogo(std::nullopt);
    importOver();
}

void ClientForm::setLogo(std::optional<std::string> logo)
{
    logoData_ = std::move(logo);
    image_ = logoData_ ? ClientLogos::decoded(*logoData_) : QImage();
    logoEdited_ = true;
}

void ClientForm::retire()
{
    logo_.cancel();
    EditorForm::retire();
}

void ClientForm::carryOut()
{
    if (isImportingLogo()) {
        throw KestryCore::LedgerError(stillImporting);
    }
    if (isNew()) {
        add();
    } else {
        update();
    }
}

std::optional<Cents> ClientForm::newRate(const KestryCore::Client* stored) const
{
    const bool isTyped = !stored || rate_ != std::get<1>(loaded_);
    if (!projectsEnabled_ && isTyped) {
        return KestryCore::readRate(rate_.toStdString());
    }
    // Where each project has its rate, too, the client keeps what it has.
    return stored && stored->rateIsKnown ? std::optional(stored->hourlyRateCents) : std::nullopt;
}

void ClientForm::add()
{
    const auto cents = newRate(nullptr);
    KestryCore::NewClient client;
    client.name = name_.toStdString();
    client.rateCents = cents.value_or(0);
    client.rateIsKnown = cents.has_value();
    client.logoData = logoData_;
    client.projectsEnabled = projectsEnabled_;
    const auto id = store().addClient(client);
    state().selectedClient.assign(id);
    state().sessionClientID.assign(id);
    state().selectedProject.assign(std::nullopt);
    state().destination.assign(Destination::client);
}

void ClientForm::update()
{
    const auto* stored = store().data()->clients.find(*clientID_);
    const auto cents = newRate(stored);
    KestryCore::ClientChange change;
    // What was not edited may have changed elsewhere since the form was opened, and stays so.
    change.name = stored && name_ == std::get<0>(loaded_) ? stored->name : name_.toStdString();
    change.rateCents = cents.value_or(0);
    change.rateIsKnown = cents.has_value();
    change.colorHex = stored ? stored->colorHex : std::string(KestryCore::ClientColor::initialHex);
    if (logoEdited_) {
        change.logo = KestryCore::ClientLogoChange::replace(logoData_);
    }
    if (projectsModeEdited_) {
        change.projectsEnabled = projectsEnabled_;
    }
    store().updateClient(*clientID_, change);
}

} // namespace Kestry
