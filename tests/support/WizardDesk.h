#pragma once

#include "catalogue/ProjectCatalogue.h"
#include "dialogs/frmSelPrjTypetoAdd.h"
#include "projectfiles/BookFile.h"
#include "support/FormDriver.h"
#include "support/TestProgram.h"

/// The wizard open in front of a world, with what an author does in it.
struct Wizard
{
    TestProgram &world;
    QPointer<frmSelPrjTypetoAdd> form = new frmSelPrjTypetoAdd(world.program);

    explicit Wizard(TestProgram &program)
        : world(program)
    {
        form->show();
        form->activateWindow();
        [[maybe_unused]] const bool active = QTest::qWaitForWindowActive(form);
    }
    ~Wizard() { delete form; }

    void fill(const QString &name, const QString &id,
              const QString &language = QStringLiteral("English"))
    {
        control<QLineEdit>(form, "txtProjectName")->setText(name);
        control<QLineEdit>(form, "txtPrjId")->setText(id);
        control<QComboBox>(form, "cboLanguage")->setCurrentText(language);
    }
    void fillCopyOfPlant()
    {
        fill(QStringLiteral("Harbour"), QStringLiteral("H01"));
        click(form, "optSelPrjTypetoAdd_1");
        control<QComboBox>(form, "cboSelPrjtoCopy")->setCurrentText(QStringLiteral("Plant"));
    }
    void fillMigration()
    {
        fill(QStringLiteral("Plant"), QStringLiteral("P01"));
        click(form, "optSelPrjTypetoAdd_2");
        control<QLineEdit>(form, "txtSelDBtoMigrate")
            ->setText(QStringLiteral("C:\\Old\\plant.mdb"));
    }
    QString focus() const
    {
        return form->focusWidget() ? form->focusWidget()->objectName() : QString();
    }
};

inline QStringList names(TestProgram &world)
{
    QStringList names;
    for (const CatalogueEntry &entry : ProjectCatalogue(world.session, world.files).entries())
        names.append(entry.name);
    return names;
}

/// A book of one page.
inline void addPumps(TestProgram &world, const QString &project)
{
    const TocBook entry{QStringLiteral("Pumps"),
                        QStringLiteral("PMP"),
                        project,
                        QStringLiteral("Pumps"),
                        QStringLiteral("Book_PMP.xml"),
                        {},
                        {}};
    TableOfContents(world.session, world.files).addBook(project, entry);
    Book book;
    book.name = entry.name;
    BookPage page;
    page.file = QStringLiteral("start.htm");
    book.pages = {page};
    BookFile(world.session, world.files).write(project, entry, book);
    world.put(QStringLiteral("S:\\Docs\\") + project + QStringLiteral("\\Pumps\\start.htm"),
              "<p>**Plant** and **plant**</p>");
}
