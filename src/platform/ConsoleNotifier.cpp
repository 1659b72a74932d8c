#include "ConsoleNotifier.h"

#include <cstdio>

namespace zelto {

void ConsoleNotifier::showMessage(const QString& text, MessageIcon /*icon*/)
{
    QString line = text.trimmed();
    line.replace(u'\n', u' ');
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stderr);
}

Answer ConsoleNotifier::ask(const Question& question)
{
    showMessage(question.caption + QStringLiteral(": ") + question.text, MessageIcon::Question);
    return Answer::Cancelled;
}

bool ConsoleNotifier::askYesNo(const QString& text)
{
    showMessage(text, MessageIcon::Question);
    return false;
}

} // namespace zelto
