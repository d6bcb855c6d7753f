#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "module/registry/dim_facade.h"
#include "module/registry/update_service.h"

/// Handlers registered with the process's registry for as long as this lives; they write down what
/// they are asked for.
class Handlers {
 public:
  Handlers() = default;
  Handlers(const Handlers&) = delete;
  ~Handlers() {
    for (const std::wstring& type : types_) registry().logout(type);
  }

  void regist(const std::wstring& type, int answer = 1) {
    if (registry().regist(type, new Handler(*this, answer))) types_.push_back(type);
  }
  void when_called(std::function<void(DimUpdateRequest&)> then) { then_ = std::move(then); }

  const std::vector<std::wstring>& calls() const { return calls_; }  ///< types, in order
  std::vector<std::wstring> take_calls() { return std::exchange(calls_, {}); }
  const DimUpdateRequest& last() const { return last_; }

 private:
  class Handler : public CDimFacade {
   public:
    Handler(Handlers& all, int answer) : all_(all), answer_(answer) {}
    int update(DimUpdateRequest& request) override {
      all_.calls_.push_back(request.dimTypeName);
      all_.last_ = request;
      if (all_.then_) all_.then_(request);
      return answer_;
    }

   private:
    Handlers& all_;
    int answer_;
  };

  static CDimupateRegisiter& registry() { return CDimUpdateServ::getInstance().getDimRegServ(); }

  std::vector<std::wstring> types_;
  std::vector<std::wstring> calls_;
  DimUpdateRequest last_;
  std::function<void(DimUpdateRequest&)> then_;
};
