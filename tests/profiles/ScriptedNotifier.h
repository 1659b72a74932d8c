#pragma once

#include "platform/Notifier.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <deque>
#include <vector>

namespace zelto::test {

// Records every message and question, and answers the questions from a script. A question the
// script did not expect fails the test and is answered Cancelled.
class ScriptedNotifier final : public Notifier {
public:
    explicit ScriptedNotifier(std::deque<Answer> answers = {}) : answers_(std::move(answers)) { }

    void showMessage(const QString& text, MessageIcon /*icon*/) override { messages.append(text); }

    Answer ask(const Question& question) override
    {
        questions.push_back(question);
        if (answers_.empty()) {
            ADD_FAILURE() << "unexpected question: " << question.text.toStdString();
            return Answer::Cancelled;
        }
        const Answer answer = answers_.front();
        answers_.pop_front();
        return answer;
    }

    void script(std::deque<Answer> answers) { answers_ = std::move(answers); }
    [[nodiscard]] std::size_t unused() const { return answers_.size(); }

    QStringList messages;
    std::vector<Question> questions;

private:
    std::deque<Answer> answers_;
};

} // namespace zelto::test
