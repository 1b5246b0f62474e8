#include "KestrioKit/Widgets/Questions/QuestionContentContainer.h"

#include "KestrioKit/Core/Platform/LanguageBundle.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

QuestionContentContainer::QuestionContentContainer(Details questionDetails,
                                                   const QColor &themeColor, bool isLastQuestion)
    : m_questionDetails(std::move(questionDetails)),
      m_themeColor(themeColor),
      m_isLastQuestion(isLastQuestion) {}

void QuestionContentContainer::setDelegate(WeakDelegate<QuestionContentViewDelegate> delegate) {
    m_delegate = std::move(delegate);
}

QString QuestionContentContainer::actionTitle() const {
    return AnyLanguageBundle::framework().localizedString(m_isLastQuestion ? u"Finish"_s
                                                                           : u"Next"_s);
}

void QuestionContentContainer::finish(const CodableDynamicType &response) const {
    if (auto *const delegate = m_delegate.get())
        delegate->questionDidFinish(response);
}

} // namespace KestrioKit
