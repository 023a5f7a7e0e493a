#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <string>

#include "CloudAccount.h"

namespace Kestry {

/// The form in which the user signs in to a record store. The password passes through it and is
/// not kept.
class SignInForm final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one form.")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    Q_PROPERTY(QString address READ address WRITE setAddress NOTIFY changed)
    Q_PROPERTY(QString user READ user WRITE setUser NOTIFY changed)
    Q_PROPERTY(bool needsUser READ needsUser NOTIFY changed)
    Q_PROPERTY(bool isChecking READ isChecking NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    /// The account must outlive the form.
    explicit SignInForm(CloudAccount& account) : account_(account) { }

    [[nodiscard]] bool isOpen() const { return isOpen_; }
    [[nodiscard]] QString address() const { return address_; }
    void setAddress(const QString& address);
    [[nodiscard]] QString user() const { return user_; }
    void setUser(const QString& user);
    /// Whether the store at the address has users: a file has none.
    [[nodiscard]] bool needsUser() const;
    /// Whether the store is being asked.
    [[nodiscard]] bool isChecking() const { return isChecking_; }
    /// Why the user is not signed in; empty before the first try.
    [[nodiscard]] QString message() const { return message_; }

    /// Opens the form, with the account that is signed in.
    Q_INVOKABLE void open();
    /// Asks the store, and closes the form when it takes the account.
    Q_INVOKABLE void submit(const QString& password);
    /// Closes the form. The user stays who he was.
    Q_INVOKABLE void cancel();

signals:
    void changed();

private:
    void refuse(const std::string& message);
    void close();

    CloudAccount& account_;
    bool isOpen_ = false;
    bool isChecking_ = false;
    int attempts_ = 0;
    QString address_;
    QString user_;
    QString message_;
};

} // namespace Kestry
