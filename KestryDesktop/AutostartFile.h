#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QString>

#include "Autostart.h"

namespace Kestry {

/// By a file in the user's autostart directory. What a person has written into it stays: such a
/// file is switched by its keys, and only one that is as this writes it is removed. A file that is
/// no desktop entry starts nothing, and is written anew when it is to.
class AutostartFile final : public QObject, public Autostart {
    Q_OBJECT
public:
    /// `configuration` is the user's configuration directory, `program` the path of what starts.
    AutostartFile(const QString& configuration, const QString& program);

    [[nodiscard]] bool isOn() const override;
    void set(bool isOn) override;
    void follow(std::function<void()> changed) override;

private:
    [[nodiscard]] QByteArray ownContents() const;
    [[nodiscard]] QStringList present() const;
    void watch();
    void changedOutside();

    QString configuration_;
    QString directory_;
    QString program_;
    QFileSystemWatcher watcher_;
    std::function<void()> changed_;
    bool wasOn_ = false; ///< When it was told last.
};

/// The path of a program as the key `Exec` of a desktop entry has it.
[[nodiscard]] QByteArray execText(const QString& program);

} // namespace Kestry
