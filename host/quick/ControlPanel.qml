import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import KestrioKit

// A control for each operation of the library, and the results.
ColumnLayout {
    id: panel

    readonly property var stateNames: ["no survey", "a survey is ready", "the library is disabled"]

    function log(line: string) {
        results.append(Qt.formatTime(new Date(), "hh:mm:ss  ") + line);
    }

    function logState(event: string, state: int) {
        log(event + ": " + stateNames[state]);
    }

    function placeOrder() {
        const event = "Checkout Finished";
        log("An order was placed");
        Kestrio.track(event, state => {
                logState(event, state);
                if (state === SurveyState.SurveyReady)
                    Kestrio.presentSurvey(Window.window);
            });
    }

    spacing: ShopStyle.spacing

    Card {
        heading: "Visitor"

        RowLayout {
            NamedField {
                id: environment

                name: "Environment"
                text: "demo-shop"
            }

            NamedButton {
                name: "Configure"
                onClicked: {
                    panel.log(name + " " + environment.text);
                    Kestrio.configure(environment.text);
                }
            }
        }

        RowLayout {
            NamedField {
                id: language

                name: "Language"
            }

            NamedButton {
                name: "Set language"
                onClicked: {
                    panel.log(name + " " + language.text);
                    Kestrio.setLocale(language.text);
                }
            }
        }

        RowLayout {
            NamedField {
                id: user

                name: "User identifier"
                text: "user-7"
            }

            NamedButton {
                name: "Set user"
                onClicked: {
                    panel.log(name + " " + user.text);
                    Kestrio.setUserIdentifier(user.text);
                }
            }

            NamedButton {
                name: "Log out"
                onClicked: {
                    panel.log(name);
                    Kestrio.logout();
                }
            }
        }

        RowLayout {
            NamedField {
                id: email

                name: "E-mail"
                text: "ada@example.com"
            }

            NamedButton {
                name: "Set e-mail"
                onClicked: {
                    panel.log(name + " " + email.text);
                    Kestrio.setEmailAddress(email.text);
                }
            }
        }

        RowLayout {
            NamedField {
                id: key

                name: "Key"
                text: "plan"
            }

            NamedField {
                id: value

                name: "Value"
                text: "pro"
            }

            NamedButton {
                name: "Set"
                onClicked: {
                    panel.log(name + " " + key.text + " " + value.text);
                    Kestrio.setVisitorAttribute(key.text, value.text);
                }
            }

            NamedButton {
                name: "Remove"
                onClicked: {
                    panel.log(name + " " + key.text);
                    Kestrio.removeVisitorAttributes([key.text]);
                }
            }
        }

        NamedCheckBox {
            name: "Network access"
            checked: !Kestrio.disableNetworkAccess
            onToggled: {
                panel.log(checked ? "Network on" : "Network off");
                Kestrio.disableNetworkAccess = !checked;
            }
        }
    }

    Card {
        heading: "Events"

        RowLayout {
            NamedField {
                id: event

                name: "Event"
                text: "Checkout Finished"
            }

            NamedButton {
                name: "Track"
                onClicked: {
                    panel.log(name + " " + event.text);
                    Kestrio.track(event.text);
                }
            }

            NamedButton {
                name: "Track and ask"
                onClicked: {
                    panel.log(name + " " + event.text);
                    Kestrio.track(event.text, state => panel.logState(event.text, state));
                }
            }
        }
    }

    Card {
        heading: "Surveys"

        RowLayout {
            NamedField {
                id: number

                name: "Survey number"
                text: "1"
                validator: IntValidator {
                }
            }

            NamedButton {
                name: "Fetch and show"
                onClicked: {
                    panel.log(name + " " + number.text);
                    Kestrio.presentSurvey(Number(number.text), panel.Window.window, () => panel.log("The survey has come"));
                }
            }
        }

        RowLayout {
            NamedButton {
                name: "Show the held one"
                onClicked: {
                    panel.log(name);
                    Kestrio.presentSurvey(panel.Window.window);
                }
                Layout.fillWidth: true
            }

            NamedButton {
                name: "Show a sample"
                onClicked: {
                    panel.log(name);
                    Kestrio.presentDebugSurvey(panel.Window.window);
                }
                Layout.fillWidth: true
            }
        }
    }

    Card {
        heading: "What happened"
        Layout.fillHeight: true

        ScrollView {
            clip: true
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: ShopStyle.logHeight

            TextArea {
                id: results

                objectName: "What happened"
                placeholderText: "Configure the library first."
                readOnly: true
                Accessible.name: objectName
            }
        }
    }
}
