#pragma once

#include "platform/Notifier.h"

#include <QList>
#include <QStringList>

#include <gtest/gtest.h>

#include <deque>
#include <optional>
#include <vector>

namespace zelto::test {

// A window's notifier on the UI thread: keeps what it was told and asked, answers the three-button
// questions from `answers` and the yes/no ones with `yes`. A question with no answer left fails the
// test, unless `fallback` gives one.
class TestNotifier final : public Notifier {
public:
    explicit TestNotifier(std::deque<Answer> script = {}) : answers(std::move(script)) { }

    void showMessage(const QString& text, MessageIcon icon) override
    {
        messages.append(text);
        icons.append(icon);
    }
    Answer ask(const Question& question) override
    {
        questions.push_back(question);
        if (answers.empty()) {
            if (!fallback)
                ADD_FAILURE() << "unexpected question: " << question.text.toStdString();
            return fallback.value_or(Answer::Cancelled);
        }
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    bool askYesNo(const QString& text) override
    {
        yesNoQuestions.append(text);
        return yes;
    }
    // A fresh script of answers, with nothing told or asked yet.
    void reset(std::deque<Answer> script) { *this = TestNotifier(std::move(script)); }

    std::deque<Answer> answers;
    std::optional<Answer> fallback;
    bool yes = false;
    QStringList messages;
    QList<MessageIcon> icons;
    std::vector<Question> questions;
    QStringList yesNoQuestions;
};

} // namespace zelto::test
