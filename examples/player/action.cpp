#include "action.h"

#include <QStringList>

#include <cmath>

namespace player {

namespace {

struct Form
{
    enum class Argument { None, Numbers, File, Target };

    const char *word;
    Action::Kind kind;
    Argument argument = Argument::None;
    int count = 0; // of numbers
};

using Kind = Action::Kind;
using Argument = Form::Argument;

constexpr Form forms[] = {
    {"tap", Kind::Tap, Argument::Target},
    {"pan", Kind::Pan, Argument::Numbers, 3},
    {"tilt", Kind::Tilt, Argument::Numbers, 1},
    {"shake", Kind::Shake},
    {"close", Kind::Close},
    {"hide", Kind::Hide},
    {"show", Kind::Show},
    {"alpha", Kind::Alpha, Argument::Numbers, 1},
    {"move", Kind::Move, Argument::Numbers, 2},
    {"scroll", Kind::Scroll, Argument::Numbers, 1},
    {"screenshot", Kind::Screenshot, Argument::File},
    {"dump", Kind::Dump, Argument::File},
    {"defaults", Kind::Defaults, Argument::File},
    {"quit", Kind::Quit},
};

const Form *formOf(const QString &word)
{
    for (const Form &form : forms) {
        if (word == QLatin1String(form.word))
            return &form;
    }
    return nullptr;
}

std::optional<double> finite(const QString &text)
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

bool isTime(double seconds)
{
    return seconds >= 0 && seconds <= longestSeconds;
}

bool readNumbers(const QString &text, int count, QList<double> *numbers)
{
    const QStringList parts = text.split(u',');
    for (const QString &part : parts) {
        const auto number = finite(part);
        if (!number)
            return false;
        numbers->append(*number);
    }
    return parts.size() == count;
}

// NAME, NAME:ROW or :ROW
bool readTarget(const QString &text, Action *action)
{
    const QStringList parts = text.split(u':');
    action->name = parts.at(0);
    if (parts.size() == 1)
        return !action->name.isEmpty();
    bool ok = false;
    action->row = parts.at(1).toInt(&ok);
    return ok && action->row >= 0 && parts.size() == 2;
}

bool readArgument(const Form &form, const std::optional<QString> &argument, Action *action)
{
    if (!argument)
        return form.argument == Argument::None || form.argument == Argument::Target;
    switch (form.argument) {
    case Argument::None:
        return false;
    case Argument::Numbers:
        return readNumbers(*argument, form.count, &action->numbers)
            && (form.kind != Kind::Pan || isTime(action->numbers.at(2) / 1000));
    case Argument::File:
        action->name = *argument;
        return !argument->isEmpty();
    case Argument::Target:
        return readTarget(*argument, action);
    }
    return false;
}

} // namespace

std::optional<Action> readTimedAction(const QString &text)
{
    const auto at = finite(text.section(u':', 0, 0));
    const Form *form = formOf(text.section(u':', 1, 1));
    if (!at || !isTime(*at) || !form)
        return std::nullopt;

    Action action;
    action.kind = form->kind;
    action.at = *at;
    action.text = text.section(u':', 1);
    std::optional<QString> argument;
    if (const qsizetype colon = action.text.indexOf(u':'); colon >= 0)
        argument = action.text.sliced(colon + 1);
    if (!readArgument(*form, argument, &action))
        return std::nullopt;
    return action;
}

} // namespace player
