// SPDX-License-Identifier: MIT
// A window of the application with this id. Usage: gjs -m window.js ID TITLE
import Gtk from 'gi://Gtk?version=4.0';
import system from 'system';

const [id, title] = system.programArgs;
const application = new Gtk.Application({application_id: id});
application.connect('activate', () => {
    new Gtk.ApplicationWindow({application, title, default_width: 300, default_height: 200}).present();
});
application.run([]);
