#include "dialogs/CFillPage.h"

CFillPage::CFillPage(QWidget* parent) : QWidget(parent) {}
