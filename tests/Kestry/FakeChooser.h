#pragma once

#include <utility>

#include "FileChooser.h"

namespace Kestry {

/// A file chooser that is answered by the test.
class FakeChooser final : public FileChooser {
public:
    void ask(const FileQuestion& question, Answered answered) override
    {
        asked = question;
        answer = std::move(answered);
    }
    void choose(const QString& path) const { answer({FileAnswer::Kind::chosen, path}); }

    FileQuestion asked;
    Answered answer;
};

} // namespace Kestry
