#include "network/joints.h"

#include <string>
#include <utility>
#include <vector>

#include "network/object_data.h"
#include "tests/network/network_drawing.h"

namespace {

using namespace network_drawing;

class Joints : public WithNetwork {
 protected:
  using Met = std::vector<std::pair<std::uint64_t, bool>>;  // pipe, whether with its start

  Met at(std::uint64_t node) const {
    Met met;
    for (const network::Joint& joint : network::joints_of(id(node)))
      met.emplace_back(std::uint64_t{joint.pipe.handle()}, joint.at_start);
    return met;
  }
  std::string ename(const std::string& handle) const { return "(handent \"" + handle + "\")"; }
  void set_group(const std::string& handle, int group, const std::string& value) {
    eval("(setq e (entget " + ename(handle) + ")) (entmod (subst (cons " + std::to_string(group) +
         " " + value + ") (assoc " + std::to_string(group) + " e) e))");
  }

  const std::string pipe = kind("drainage-pipe"), pit = kind("drainage-well");
  static std::string between(const std::string& start, const std::string& end) {
    return node("start_node", start) + node("end_node", end);
  }
};

TEST_F(Joints, AreThePipesThatMeetTheNodeInTheOrderOfTheDrawing) {
  given_network(line("A3", 0, 0, 10, 0, pipe + between("B1", "B2")) +
                line("A1", 10, 0, 20, 0, pipe) + well("B1", 0, 0, pit) + well("B2", 10, 0, pit) +
                well("B3", 40, 0, pit) + line("A2", 10, 0, 10, 9, pipe + node("end_node", "B2")));
  EXPECT_EQ(at(0xB1), (Met{{0xA3, true}}));
  EXPECT_EQ(at(0xB2), (Met{{0xA3, false}, {0xA1, true}}))
      << "A2 would start where it ends, and meets nothing";
  EXPECT_EQ(at(0xB3), Met());
  EXPECT_EQ(at(0xA3), Met()) << "a pipe is no node";
  EXPECT_TRUE(network::joints_of(AcDbObjectId()).empty());
}

TEST_F(Joints, FollowPipesThatComeGoAndNameOtherNodes) {
  given_network(line("A1", 0, 0, 10, 0, pipe + between("B1", "B2")) + well("B1", 0, 0, pit) +
                well("B2", 10, 0, pit) + well("B3", 10, 50, pit));
  EXPECT_EQ(at(0xB2), (Met{{0xA1, false}}));
  network::write_handle(id(0xA1), network::Key::kEndNode, 0xB3);
  EXPECT_EQ(at(0xB2), Met());
  EXPECT_EQ(at(0xB3), (Met{{0xA1, false}}));
  eval("(entdel " + ename("A1") + ")");
  EXPECT_EQ(at(0xB1), Met());
  eval("(entdel " + ename("A1") + ")");
  EXPECT_EQ(at(0xB1), (Met{{0xA1, true}}));
}

TEST_F(Joints, ArePipesMadeLater) {
  database = host.new_drawing()->database();
  eval("(regapp \"PIPENOTE\")");
  const auto made = [this](const std::string& groups, const std::string& word) {
    const std::string handle =
        eval("(progn (entmake '(" + groups + " (-3 (\"PIPENOTE\" (1000 . \"kind\") (1000 . \"" +
             word + "\"))))) (cdr (assoc 5 (entget (entlast)))))");
    return std::stoull(handle.substr(1), nullptr, 16);
  };
  const auto pit_made = made("(0 . \"POINT\") (10 0.0 0.0 0.0)", "drainage-well");
  EXPECT_EQ(at(pit_made), Met());
  const auto first = made("(0 . \"LINE\") (10 0.0 0.0 0.0) (11 0.0 9.0 0.0)", "drainage-pipe");
  EXPECT_EQ(at(pit_made), (Met{{first, true}}));
  const auto second = made("(0 . \"LINE\") (10 9.0 0.0 0.0) (11 0.0 0.0 0.0)", "drainage-pipe");
  EXPECT_EQ(at(pit_made), (Met{{first, true}, {second, false}}));
}

TEST_F(Joints, FollowNodesThatComeGoAndMove) {
  given_network(line("A1", 0, 0, 10, 0, pipe + node("end_node", "B2")) + well("B1", 0, 0, pit) +
                well("B2", 10, 0, pit) + well("B3", 30, 30, pit));
  EXPECT_EQ(at(0xB1), (Met{{0xA1, true}}));
  set_group("B1", 10, "'(5.0 5.0 0.0)");
  EXPECT_EQ(at(0xB1), Met()) << "it is no longer near";
  set_group("B3", 10, "'(0.1 0.0 0.0)");
  EXPECT_EQ(at(0xB3), (Met{{0xA1, true}}));
  eval("(entdel " + ename("B2") + ")");
  EXPECT_EQ(at(0xB2), Met());
  eval("(entdel " + ename("B2") + ")");
  EXPECT_EQ(at(0xB2), (Met{{0xA1, false}}));
  set_group("A1", 10, "'(5.0 5.0 0.0)");
  EXPECT_EQ(at(0xB3), Met());
  EXPECT_EQ(at(0xB1), (Met{{0xA1, true}}));
}

}  // namespace
