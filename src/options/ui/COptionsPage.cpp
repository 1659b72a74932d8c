#include "COptionsPage.h"

#include "platform/Notifier.h"
#include "platform/StringTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QIntValidator>
#include <QLineEdit>
#include <QRadioButton>

namespace zelto {

COptionsPage::COptionsPage(OptionPageKind kind, QString helpAnchor, QWidget* parent)
    : QWidget(parent), page_(kind), helpAnchor_(std::move(helpAnchor))
{
}

void COptionsPage::load()
{
    if (loaded_)
        return;
    page_.read();
    for (const Binding& binding : bindings_)
        binding.show(page_.value(binding.key));
    loaded();
    loaded_ = true;
    modified_ = false;
}

bool COptionsPage::confirm(Notifier& notifier)
{
    if (!numbersInRange(notifier))
        return false;
    for (const Binding& binding : bindings_)
        page_.setValue(binding.key, binding.take());
    const int refused = page_.confirm();
    // Normalised values (the log file name) go back into their controls.
    for (const Binding& binding : bindings_)
        binding.show(page_.value(binding.key));
    if (refused != 0) {
        notifier.showMessage(StringTable::text(refused), MessageIcon::Stop);
        return false;
    }
    modified_ = false;
    return true;
}

bool COptionsPage::numbersInRange(Notifier& notifier)
{
    for (const Range& range : ranges_) {
        // Empty is left to the page's own check, which names what is missing.
        if (range.edit->text().isEmpty() || range.edit->hasAcceptableInput())
            continue;
        notifier.showMessage(
            tr("Please enter a number from %1 to %2.").arg(range.lowest).arg(range.highest),
            MessageIcon::Stop);
        range.edit->setFocus();
        range.edit->selectAll();
        return false;
    }
    return true;
}

void COptionsPage::markModified()
{
    if (!loaded_)
        return;
    modified_ = true;
    Q_EMIT modified();
}

void COptionsPage::watch(QCheckBox* box)
{
    connect(box, &QCheckBox::toggled, this, &COptionsPage::markModified);
}

void COptionsPage::watch(QLineEdit* edit)
{
    connect(edit, &QLineEdit::textEdited, this, &COptionsPage::markModified);
}

void COptionsPage::bindCustom(
    const char* key, std::function<void(const QString&)> show, std::function<QString()> take)
{
    bindings_.push_back({ key, std::move(show), std::move(take) });
}

void COptionsPage::bindText(QLineEdit* edit, const char* key)
{
    watch(edit);
    bindCustom(
        key, [edit](const QString& value) { edit->setText(value); },
        [edit] { return edit->text(); });
}

void COptionsPage::bindNumber(QLineEdit* edit, const char* key, int lowest, int highest)
{
    edit->setValidator(new QIntValidator(lowest, highest, edit));
    edit->setToolTip(tr("A number from %1 to %2").arg(lowest).arg(highest));
    ranges_.push_back({ edit, lowest, highest });
    watch(edit);
    const QString fallback = page_.fallback(key);
    bindCustom(
        key,
        [edit, fallback](const QString& value) {
            edit->setText(value);
            if (!edit->hasAcceptableInput() && !value.isEmpty())
                edit->setText(fallback);
        },
        [edit] { return edit->text(); });
}

void COptionsPage::bindCheck(QCheckBox* box, const char* key, Checked checked)
{
    watch(box);
    bindCustom(
        key,
        [box, checked](const QString& value) {
            box->setChecked(checked == Checked::IfYes ? value == QLatin1StringView(settings::kYes)
                                                      : value != QLatin1StringView(settings::kNo));
        },
        [box] { return QString::fromLatin1(box->isChecked() ? settings::kYes : settings::kNo); });
}

void COptionsPage::bindChoice(const std::vector<QRadioButton*>& buttons, const QStringList& words,
    const char* key, int otherwise)
{
    for (QRadioButton* button : buttons)
        connect(button, &QRadioButton::toggled, this, &COptionsPage::markModified);
    bindCustom(
        key,
        [buttons, words, otherwise](const QString& value) {
            const qsizetype at = words.indexOf(value);
            buttons[std::size_t(at >= 0 && at < qsizetype(buttons.size()) ? at : otherwise)]
                ->setChecked(true);
        },
        [buttons, words] {
            for (std::size_t i = 0; i < buttons.size(); ++i) {
                if (buttons[i]->isChecked())
                    return words.value(qsizetype(i));
            }
            return words.value(0);
        });
}

void COptionsPage::bindIndex(QComboBox* list, const char* key)
{
    connect(list, &QComboBox::currentIndexChanged, this, &COptionsPage::markModified);
    bindCustom(
        key,
        [list](const QString& value) {
            const int at = value.toInt();
            list->setCurrentIndex(at >= 0 && at < list->count() ? at : 0);
        },
        [list] { return QString::number(list->currentIndex()); });
}

} // namespace zelto
