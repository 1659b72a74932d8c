#include "CommandLine.h"

namespace zelto {

std::optional<QString> CommandLineParser::flagName(const QString& parameter)
{
    if (parameter.startsWith(u'-'))
        return parameter.mid(1);
    if (parameter.size() == 2 && parameter.front() == u'/' && parameter.back().isLetter())
        return parameter.mid(1);
    return std::nullopt;
}

StartRequest CommandLineParser::parse(const QStringList& parameters)
{
    CommandLineParser parser;
    for (const QString& parameter : parameters) {
        const std::optional<QString> flag = flagName(parameter);
        parser.parseParameter(flag.value_or(parameter), flag.has_value());
    }
    StartRequest request = parser.request();
    request.resetQueue = request.resetQueue && request.queueRun;
    return request;
}

void CommandLineParser::parseParameter(const QString& parameter, bool isFlag)
{
    if (isFlag && parameter == QLatin1StringView("-reset")) {
        request_.resetQueue = true;
        return;
    }
    if (request_.unattended)
        return;
    if (isFlag && parameter.compare(QLatin1StringView("q"), Qt::CaseInsensitive) == 0) {
        request_.queueRun = true;
        request_.unattended = true;
        return;
    }
    if (isFlag) {
        pendingFlag_ = parameter;
        return;
    }
    if (!pendingFlag_)
        return;
    if (pendingFlag_->compare(QLatin1StringView("b"), Qt::CaseInsensitive) == 0) {
        request_.scriptFile = parameter;
        request_.unattended = true;
    } else if (*pendingFlag_ == QLatin1StringView("l")) {
        request_.linkName = parameter;
        request_.unattended = true;
    }
    pendingFlag_.reset();
}

} // namespace zelto
