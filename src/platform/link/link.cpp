#include "platform/link/link.h"

#include "platform/link/link_error.h"
#include "platform/vb/error.h"

namespace vellumar::link {

Link::~Link() { Close(); }

void Link::SetLinkTopic(std::string topic) {
  if (topic != topic_) Close();
  topic_ = std::move(topic);
}

void Link::SetLinkItem(std::string item) {
  item_ = std::move(item);
  if (mode_ == kLinkAutomatic && !item_.empty()) LinkRequest();
}

void Link::SetLinkMode(int mode) {
  if (mode != kLinkNone && mode != kLinkAutomatic && mode != kLinkManual) {
    vb::Raise(vb::kInvalidProcedureCall);
  }
  if (mode == kLinkNone) {
    Close();
    return;
  }
  if (!conversation_) Open();
  mode_ = mode;
  if (mode_ == kLinkAutomatic && !item_.empty()) {
    try {
      LinkRequest();
    } catch (...) {
      Close();
      throw;
    }
  }
}

void Link::Open() {
  const auto bar = topic_.find('|');
  if (bar == std::string::npos) RaiseLinkError(kNoResponder);
  conversation_ = endpoint_.Connect(topic_.substr(0, bar), topic_.substr(bar + 1));
  conversation_->OnItemChanged([this](const std::string& item, const std::string& value) {
    if (mode_ == kLinkAutomatic && item == item_) SetText(value);
  });
  conversation_->OnClosed([this] {
    Close();
    if (onClose_) {
      auto handler = onClose_;
      handler();
    }
  });
}

void Link::Close() {
  // Reset first: destroying the conversation may run nothing of ours, but the state is clear.
  std::unique_ptr<Conversation> conversation = std::move(conversation_);
  mode_ = kLinkNone;
}

Conversation& Link::OpenConversation() {
  if (!conversation_) RaiseLinkError(kNoChannel);
  return *conversation_;
}

void Link::LinkExecute(const std::string& command) {
  if (!OpenConversation().Execute(command)) RaiseLinkError(kRefused);
}

void Link::LinkRequest() { SetText(OpenConversation().Request(item_)); }

void Link::SetText(const std::string& text) {
  if (text == text_) return;
  text_ = text;
  if (onChange_) {
    auto handler = onChange_;
    handler(text_);
  }
}

}  // namespace vellumar::link
