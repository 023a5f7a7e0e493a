#include "CommandAnswers.h"

#include "JsonWriter.h"
#include "LedgerError.h"
#include "PlainText.h"
#include "UsageError.h"

namespace Kestry {

namespace {

std::string errorJson(const std::string& message)
{
    KestryCore::JsonWriter json;
    json.beginObject();
    json.member("error", wellFormed(message));
    json.endObject();
    return visibleJson(json.take()) + "\n";
}

LocalAnswer failure(ExitStatus status, const std::string& message, bool asJson)
{
    LocalAnswer answer;
    answer.status = static_cast<int>(status);
    answer.errors = printableLines(message) + "\n";
    answer.output = asJson ? errorJson(message) : std::string();
    return answer;
}

} // namespace

LocalAnswer shownAnswer(CommandAnswer answer, bool asJson)
{
    LocalAnswer shown;
    shown.status = static_cast<int>(answer.isSound ? ExitStatus::done : ExitStatus::refused);
    shown.output = asJson ? visibleJson(std::move(answer.json)) + "\n" : std::move(answer.text);
    shown.file = std::move(answer.file);
    return shown;
}

LocalAnswer answerOrFailure(bool asJson, const std::function<LocalAnswer()>& action)
{
    try {
        return action();
    } catch (const UsageError& caught) {
        return failure(ExitStatus::unusable, caught.what(), asJson);
    } catch (const std::exception& caught) {
        return failure(ExitStatus::refused, KestryCore::failureText(caught), asJson);
    }
}

} // namespace Kestry
