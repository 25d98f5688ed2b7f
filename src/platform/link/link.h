#pragma once
// The client end of a link, as a link control holds it: LinkTopic "Application|Topic",
// LinkItem, LinkMode, LinkExecute, LinkRequest, and notifications when the linked text changes
// and when the link closes because the peer went away.
//
// States, moved by SetLinkMode and by the peer:
//   none       (LinkMode 0) no conversation. SetLinkMode(1 or 2) opens one with LinkTopic;
//              a failure raises (kNoResponder, kRefused) and leaves the link in none.
//   automatic  (LinkMode 1) opening requests LinkItem into Text, then every change of that
//              item is copied into Text as the peer announces it.
//   manual     (LinkMode 2) Text changes only by LinkRequest.
// From automatic or manual: SetLinkMode(0), a new LinkTopic, or destroying the link closes the
// conversation quietly; the peer going away closes it, sets LinkMode 0 and calls the
// LinkClose handler. LinkExecute and LinkRequest need an open link (else kNoChannel).
#include <functional>
#include <memory>
#include <string>

#include "platform/link/endpoint.h"

namespace vellumar::link {

enum LinkModeValue : int { kLinkNone = 0, kLinkAutomatic = 1, kLinkManual = 2 };

class Link {
 public:
  // `endpoint` is the program's place on the transport; it outlives the link.
  explicit Link(LinkEndpoint& endpoint) : endpoint_(endpoint) {}
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  // "Application|Topic". Changing it closes an open link (LinkMode becomes 0).
  const std::string& LinkTopic() const { return topic_; }
  void SetLinkTopic(std::string topic);
  // The item the text follows. Changing it on an automatic link requests the new item.
  const std::string& LinkItem() const { return item_; }
  void SetLinkItem(std::string item);
  // 0, 1 or 2 as above; any other value raises error 5.
  int LinkMode() const { return mode_; }
  void SetLinkMode(int mode);

  // Sends a command; returns when the peer accepted it. Refused: kRefused.
  void LinkExecute(const std::string& command);
  // Reads LinkItem from the peer into Text.
  void LinkRequest();

  // The linked text as last received.
  const std::string& Text() const { return text_; }

  // Called when the link changes Text, with the new text.
  void OnChange(std::function<void(const std::string& text)> handler) {
    onChange_ = std::move(handler);
  }
  // Called when the peer went away and the link closed.
  void OnLinkClose(std::function<void()> handler) { onClose_ = std::move(handler); }

 private:
  void Open();
  void Close();
  void SetText(const std::string& text);
  Conversation& OpenConversation();

  LinkEndpoint& endpoint_;
  std::string topic_;  // "Application|Topic"
  std::string item_;   // item followed or requested
  int mode_ = kLinkNone;
  std::string text_;  // the item's value as last received
  std::unique_ptr<Conversation> conversation_;
  std::function<void(const std::string&)> onChange_;
  std::function<void()> onClose_;
};

}  // namespace vellumar::link
