#include "SignInForm.h"

#include <optional>

#include "LocalMessage.h"

namespace Kestry {

void SignInForm::setAddress(const QString& address)
{
    address_ = address;
    emit changed();
}

void SignInForm::setUser(const QString& user)
{
    user_ = user;
    emit changed();
}

bool SignInForm::needsUser() const
{
    return !address_.trimmed().startsWith("sqlite:");
}

void SignInForm::open()
{
    if (isOpen_) {
        return;
    }
    const CloudAccount::Name name = account_.name()->value_or(CloudAccount::Name{});
    address_ = QString::fromStdString(name.address);
    user_ = QString::fromStdString(name.user);
    message_.clear();
    isOpen_ = true;
    emit changed();
}

void SignInForm::submit(const QString& password)
{
    if (!isOpen_ || isChecking_) {
        return;
    }
    const QString address = address_.trimmed();
    const QString user = needsUser() ? user_.trimmed() : QString();
    if (address.isEmpty()) {
        refuse("Enter the address of the record store.");
        return;
    }
    if (needsUser() && user.isEmpty()) {
        refuse("Enter your name on the server.");
        return;
    }
    const std::string secret = needsUser() ? password.toStdString() : std::string();
    if (secret.size() > LocalMessageLimits::secret) {
        refuse("No password is as long as this.");
        return;
    }
    isChecking_ = true;
    message_.clear();
    emit changed();
    account_.signIn({address.toStdString(), user.toStdString(), secret},
        [this, attempt = ++attempts_](const std::optional<std::string>& failure) {
            if (!isChecking_ || attempt != attempts_) {
                return; // The form was closed meanwhile, and perhaps opened again.
            }
            isChecking_ = false;
            if (failure) {
                refuse(*failure);
            } else {
                close();
            }
        });
}

void SignInForm::cancel()
{
    if (isChecking_) {
        account_.cancelSignIn();
    }
    if (isOpen_) {
        close();
    }
}

void SignInForm::refuse(const std::string& message)
{
    message_ = QString::fromStdString(message);
    emit changed();
}

void SignInForm::close()
{
    isOpen_ = false;
    isChecking_ = false;
    emit changed();
}

} // namespace Kestry
