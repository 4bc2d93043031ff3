#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QVariant>
#include <QWidget>

/// Windows compared with a table, name by name.
namespace torvel::test {

struct WidgetRow {
    const char* name;
    const char* className;
    const char* text;  ///< null: has none
    const char* parent;
};

struct SizeRow {
    const char* name;
    int minWidth, minHeight, maxWidth, maxHeight;
};

constexpr int kFree = QWIDGETSIZE_MAX;  ///< a side without a limit

/// The widget of that name below the window; null, reported, when there is none of the type.
template <class T>
T* namedWidget(const QWidget* window, const char* name) {
    T* found = window ? window->findChild<T*>(name) : nullptr;
    EXPECT_NE(found, nullptr) << name;
    return found;
}

template <std::size_t N>
void expectWidgets(const QWidget* window, const WidgetRow (&rows)[N]) {
    for (const WidgetRow& row : rows) {
        const auto* found = namedWidget<QWidget>(window, row.name);
        ASSERT_NE(found, nullptr);
        EXPECT_STREQ(found->metaObject()->className(), row.className) << row.name;
        EXPECT_EQ(found->parentWidget()->objectName(), row.parent) << row.name;
        if (row.text) {
            EXPECT_EQ(found->property("text").toString(), row.text) << row.name;
        }
    }
}

template <std::size_t N>
void expectSizes(const QWidget* window, const SizeRow (&rows)[N]) {
    for (const SizeRow& row : rows) {
        const auto* found = namedWidget<QWidget>(window, row.name);
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->minimumSize(), QSize(row.minWidth, row.minHeight)) << row.name;
        EXPECT_EQ(found->maximumSize(), QSize(row.maxWidth, row.maxHeight)) << row.name;
    }
}

}  // namespace torvel::test
