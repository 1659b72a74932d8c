#include "CAsciiPage.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace zelto {

CAsciiPage::CAsciiPage(QWidget* parent)
    : COptionsPage(OptionPageKind::Ascii, QStringLiteral("options-ascii-transfer-settings"), parent)
{
    auto* grid = new QGridLayout(this);
    auto* label = new QLabel(tr("File &Extension:"));
    auto* edit = new QLineEdit;
    label->setBuddy(edit);
    auto* list = new QListWidget;
    list->setAccessibleName(tr("Text file extensions"));
    auto* add = new QPushButton(tr("&Add"));
    auto* remove = new QPushButton(tr("&Remove"));
    add->setEnabled(false);
    grid->addWidget(label, 0, 0);
    grid->addWidget(edit, 0, 1);
    grid->addWidget(add, 0, 2);
    grid->addWidget(list, 1, 0, 1, 2);
    grid->addWidget(remove, 1, 2, Qt::AlignTop);
    setTabOrder(edit, add);
    setTabOrder(add, list);
    setTabOrder(list, remove);

    connect(edit, &QLineEdit::textChanged, add,
        [add](const QString& text) { add->setEnabled(!text.isEmpty()); });
    connect(edit, &QLineEdit::returnPressed, add, &QPushButton::click);
    connect(add, &QPushButton::clicked, this, [this, edit, list] {
        // A comma would split the entry when the list is read again.
        const QString extension = edit->text().remove(u',').trimmed();
        if (extension.isEmpty())
            return;
        list->addItem(extension);
        edit->clear();
        markModified();
    });
    connect(remove, &QPushButton::clicked, this, [this, list] {
        delete list->currentItem();
        markModified();
    });

    // Stored as each entry followed by a comma ("txt,htm,"), so an empty list stores "".
    bindCustom(
        settings::config::kTextExtensionsPage.name,
        [list](const QString& value) {
            list->clear();
            list->addItems(value.split(u',', Qt::SkipEmptyParts));
        },
        [list] {
            QString stored;
            for (int row = 0; row < list->count(); ++row)
                stored += list->item(row)->text() + u',';
            return stored;
        });
}

} // namespace zelto
